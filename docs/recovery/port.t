An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"adapters": [{"type": "LD-based", "disks": [{"count": 2, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0}]}]}
  > EOF
  $ lab lab.json
  $ kt aesentry -o setCfg -i 1 -p secret -k "a long key"
  $ for i in 0 1; do kt aesport -o mount -i $i -e 1 -p secret; kt aesport -o set -i $i --aeson; kt forceonline -i $i; done > /dev/null
  $ kt create -o vd -r 1 -d 0,1 -n payroll
  $ ktsim clock until idle
  Idle after 7 s.

## An encryption port is locked

  $ kt aesport -o dismount -i 0 > /dev/null
  $ kt aesport -o dismount -i 1 > /dev/null

The disks behind a port that is not linked to the entry with their key cannot be read, and go offline.

  $ kt info -o vd -i 0 | grep -e ^name -e ^status
  name:                payroll
  status:              offline
  $ kt event | grep 'Description.*disk [01] '| head -2
  Description:  Physical disk 1 offline caused by crypto disk on AES disable port
  Description:  Physical disk 0 offline caused by crypto disk on AES disable port
  $ kt aesport -o getCfg -i 0
  Port ID:                 0
  mount status:            dismounted
  AES enable:              Disabled

Link each port to its entry again, with the entry's password, and switch encryption on. The entry tells whether it still
has a key.

  $ kt aesentry -o getInfo | head -4
  Entry ID:                0
  Has Key:                 No
  Entry ID:                1
  Has Key:                 Yes
  $ kt aesport -o mount -i 0 -e 1 -p wrong
  
  Failed to link aes port 0 to entry 1 (error 248: password mismatch)
  [248]
  $ kt aesport -o mount -i 0 -e 1 -p secret
  
  Link aes port 0 to entry 1 is returned successfully.
  $ kt aesport -o set -i 0 --aeson
  
  Set configure of AES port 0 is returned successfully.
  $ kt aesport -o mount -i 1 -e 1 -p secret
  
  Link aes port 1 to entry 1 is returned successfully.
  $ kt aesport -o set -i 1 --aeson
  
  Set configure of AES port 1 is returned successfully.
  $ kt info -o vd -i 0 | grep -e ^name -e ^status -e '^BGA progress'
  name:                payroll
  status:              degraded
  BGA progress:    rebuilding is 0% done

What came back last is rebuilt.

  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ kt info -o vd -i 0 | grep ^status
  status:              online

An entry without a key (a new adapter, for instance) first gets the same key by *aesentry -o setCfg*; with any other one
the disks stay offline. *forceonline* is no way back to the data: it makes the disk one of its port as it is now.
