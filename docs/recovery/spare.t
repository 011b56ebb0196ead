An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"adapters": [{"type": "array-based", "battery": true, "config": {"AutoRebuildOn": 0},
  >   "disks": [{"count": 3, "type": "SAS", "size": "1TB"}, {"type": "SAS", "size": "1TB", "spare": "global"},
  >             {"type": "SATA", "size": "1TB"}, {"type": "SAS", "size": "500GB"}],
  >   "arrays": [{"name": "databases", "level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "orders"}]}]}]}
  > EOF
  $ lab lab.json

## A spare does not start

  $ ktsim disk fail 1 --force
  $ kt info -o vd -i 0 | grep -e ^status -e '^BGA status'
  status:              degraded
  BGA status:          N/A
  $ kt info -o spare | grep -e ^PD -e '^Spare type' -e '^In use'
  PD ID:               3
  Spare type:          global
  In use:              no

See first whether the adapter starts spares by itself.

  $ kt get -o hba -i 0 | grep 'Auto Rebuild'
  Auto Rebuild:            off

It does not. Take the role of a spare from the disk, and rebuild with it.

  $ kt rebuild -l 0 -d 3
  PD 3 is not a free disk.
  [1]
  $ kt delete -o spare -i 3
  Delete the spare disk 3 successfully.
  $ kt rebuild -l 0 -d 3
  Start rebuild successfully
  $ kt info -o vd -i 0 | grep -e ^status -e '^BGA progress'
  status:              degraded
  BGA progress:    rebuilding is 0% done

A spare also has to fit: of the same kind as the members and as large as the smallest. One that does not is told when it
is assigned to the array.

  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ kt assign -o array -a 0 -d 4
  
  Failed to assign disk 4 as a spare disk to array 0 (error 73: Physical disks are not of the same type.).
  [73]
  $ kt assign -o array -a 0 -d 5
  
  Failed to assign disk 5 as a spare disk to array 0 (error 77: Disk space is too small to be assigned as spare drive).
  [77]

A dedicated spare serves its own array only.
