A disk of an array fails at night; its spare takes over, the disk is replaced, and a second loss is one too many.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ vd() { kt info -o vd -i 2 | grep -e '^status' -e '^BGA progress' -e '^PD RAID'; }
  $ array() { kt info -o array -i 1 | grep -e '^PD IDs' -e '^Spare' -e '^Status'; }
  $ news() { kt event -s $1 | sed -n 's/^Description:  //p' | tac; }
  $ ktsim disk fail 1 --force
  $ vd
  status:              degraded
  PD RAID setup:       0 9 2 
  BGA progress:    rebuilding is 0% done
  $ array
  PD IDs:              0 9 2
  Spare PD IDs:        9
  Status:              functional
  $ ktsim clock until idle
  Idle after 3 h 38 min.
  $ vd
  status:              online
  PD RAID setup:       0 9 2 
  $ array
  PD IDs:              0 9 2
  Spare PD IDs:        9
  Status:              functional
  $ kt delete -o spare -i 9 --waiveconfirmation
  Unable to delete spare disk 9  (error 89: target spare disk is using)
  [82]
  $ news 1
  Physical disk 1 read write error.
  Physical disk 1 is set down
  Virtual Disk 2 is degraded
  Spare disk 9 used by disk array 1
  Rebuild disk on virtual disk 2 started
  Rebuild disk on virtual disk 2 is 25% done
  Rebuild disk on virtual disk 2 is 50% done
  Rebuild disk on virtual disk 2 is 75% done
  Rebuild disk on virtual disk 2 completed
  Virtual Disk 2 is online

The new disk gets its place back, and the spare its role.

  $ ktsim disk replace 1 --force
  $ vd
  status:              online
  PD RAID setup:       0 9 2 
  BGA progress:    copy back is 0% done
  $ ktsim clock until idle
  Idle after 3 h 38 min.
  $ vd
  status:              online
  PD RAID setup:       0 1 2 
  $ array
  PD IDs:              0 1 2
  Spare PD IDs:        9
  Status:              functional
  $ news 9
  Rebuild disk on virtual disk 2 completed
  Virtual Disk 2 is online
  Physical disk 1 is plugged out
  Physical disk 1 is plugged in
  Copy back on virtual disk 2 started
  Copy back on virtual disk 2 is 25% done
  Copy back on virtual disk 2 is 50% done
  Copy back on virtual disk 2 is 75% done
  Copy back on virtual disk 2 completed
  Spare disk information changed

A loss while another spare is being filled is one too many. Nothing was written since, so the last disk back is enough.

  $ kt delete -o spare -i 9 --waiveconfirmation
  Delete the spare disk 9 successfully.
  $ ktsim disk pull 0 --force
  $ ktsim disk pull 2 --force
  $ vd
  status:              offline
  PD RAID setup:       * 1 * 
  $ array
  PD IDs:              1
  Status:              offline
  $ ktsim disk insert 2
  $ vd
  status:              degraded
  PD RAID setup:       10 1 2 
  BGA progress:    rebuilding is 0% done
  $ array
  PD IDs:              10 1 2
  Status:              functional
  $ news 18
  Spare disk information changed
  Physical disk 9 has been unset as spare drive
  Physical disk 9 has been set as free disk
  Physical disk 0 is plugged out
  Virtual Disk 2 is degraded
  Spare disk 10 used by disk array 1
  Rebuild disk on virtual disk 2 started
  Physical disk 2 is plugged out
  Virtual Disk 2 is offline
  Rebuild disk on virtual disk 2 failed
  Physical disk 2 is plugged in
  Virtual Disk 2 is degraded
  Spare disk 10 used by disk array 1
  Rebuild disk on virtual disk 2 started
