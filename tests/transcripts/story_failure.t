A disk of an array fails at night; its spare takes over, the disk is replaced, and a second loss is one too many.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ vd() { kt info -o vd -i 2 | grep -e '^status' -e '^BGA progress' -e '^PD RAID'; }
  $ array() { kt info -o array -i 1 | grep -e '^PD IDs' -e '^Spare' -e '^Status'; }
  $ news() { kt event -s $1 | sed -n 's/^Description:  //p' | grep -v ' [257][05]% done' | tac; }
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
  $ kt delete -o spare -i 9 --waiveconfirmation
  Unable to delete spare disk 9  (error 89: target spare disk is using)
  [82]
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
  $ news 1
  Physical disk 1 read write error.
  Physical disk 1 is set down
  Virtual Disk 2 is degraded
  Spare disk 9 used by disk array 1
  Rebuild disk on virtual disk 2 started
  Rebuild disk on virtual disk 2 completed
  Virtual Disk 2 is online
  Physical disk 1 is plugged out
  Physical disk 1 is plugged in
  Copy back on virtual disk 2 started
  Copy back on virtual disk 2 completed
  Spare disk information changed

Nothing was written since the last one was lost, so its return is enough.

  $ ktsim disk pull 0 --force
  $ ktsim disk pull 2 --force
  $ vd
  status:              offline
  PD RAID setup:       * 1 * 
  $ array
  PD IDs:              1
  Spare PD IDs:        9
  Status:              offline
  $ ktsim disk insert 2
  $ vd
  status:              degraded
  PD RAID setup:       9 1 2 
  BGA progress:    rebuilding is 0% done
  $ news 20
  Virtual Disk 2 is degraded
  Spare disk 9 used by disk array 1
  Rebuild disk on virtual disk 2 started
  Physical disk 2 is plugged out
  Virtual Disk 2 is offline
  Rebuild disk on virtual disk 2 failed
  Spare disk information changed
  Physical disk 2 is plugged in
  Virtual Disk 2 is degraded
  Spare disk 9 used by disk array 1
  Rebuild disk on virtual disk 2 started
