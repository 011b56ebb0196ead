A key is put into an entry, the entry is linked to a port and the port encrypts.

  $ . "$TESTDIR/setup.sh"
  $ lab default; kt 1 aesentry -o setCfg -i 1 -p secret -k '"my own key"'; kt 1 aesop -o verifyKey -e 1 -p secret -k 'my own key'
  
  Verify key on entry 1 returned successfully.
  $ kt 1 aesport -o mount -i 0 -e 1 -p secret > /dev/null
  $ kt 1 aesport -o set -i 0 --aeson
  
  Set configure of AES port 0 failed (error 158: Virtual disk has running OS in it).
  [158]
  $ kt 1 aesport -o mount -i 3 -e 1 -p secret > /dev/null
  $ kt 1 aesport -o set -i 3 --aeson > /dev/null

The plain disks on that port went offline; one is brought back.

  $ kt 1 event | grep 'disk 7 off'
  Description:  Physical disk 7 offline caused by plain disk on AES enabled port
  $ kt 1 forceonline -i 7 -p 50 | tail -1
  Force online PD 7 is returned successfully.

A changed password is the only one that opens the entry.

  $ kt 1 aesop -o changePwd -e 1 -w secret -p new > /dev/null
  $ kt 1 aesentry -o getCfg -i 1 -p secret
  
  Get configure of AES entry 1 failed (error 248: password mismatch).
  [248]

Nobody finds a password or a key in the trace.

  $ grep -ci "secret\|$(printf secret | od -An -tx1 | tr -d ' \n')\|$(printf 'my own' | od -An -tx1 | tr -d ' \n')" trace state.db
  trace:0
  state.db:0
  [1]
