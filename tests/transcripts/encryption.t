A key goes from its entry to a port, and nobody finds it or a password in the trace.

  $ . "$TESTDIR/setup.sh"
  $ lab default; kt 1 aesentry -o setCfg -i 1 -p secret -k '"my own key"'; kt 1 aesop -o verifyKey -e 1 -p secret -k 'my own key'
  
  Verify key on entry 1 returned successfully.
  $ (kt 1 aesport -o mount -i 3 -e 1 -p secret; kt 1 aesport -o set -i 3 --aeson; kt 1 aesop -o changePwd -e 1 -w secret -p new) | grep -c success
  3
  $ grep -ci "secret\|$(printf secret | od -An -tx1 | tr -d ' \n')\|$(printf 'my own' | od -An -tx1 | tr -d ' \n')" trace state.db
  trace:0
  state.db:0
  [1]
