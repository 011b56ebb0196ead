Virtual disks with their state and what they are busy with.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt 1 info stray --obj LD --id=1 | tail -2
  BGA progress:    rebuilding is 37% done
  
  $ calls | cut -d ' ' -f 1,2 | sed 1,6d | joined
  KT_BLK_GetInfo a=1 | KT_BLK_GetInfo a=1 | KT_BLK_GetInfo a=1 | KT_DiskHasOS a=1 | KT_LD_GetStatus a=1 | KT_API_Finalize ->
  $ lab troubled
  $ kt info -o vd -i 2 | sed -n '/^BGA progress/,/^Stripe/p'
  BGA progress:    migration is 18% done
  target virtual: 
  id:                  2
  name:                migrating
  array id:            2
  status:              online
  Stripe size:         64
  $ kt 1 info -o vd | grep Total
  Total # of VD:       12
  $ kt 1 report -i 1; kt 1 info -o vd -i 1 | grep '^status'
  status:              online

What the library refuses is told and ends the listing.

  $ lab troubled
  $ ktsim fault KT_LD_GetStatus 61
  $ kt info -o vd | grep -e '^id' -e Failed -e Total -e Unable
  id:                  0
  id:                  1
  Failed to get status for LD 1 (error 61: Virtual disk is currently having BGA).
  $ ktsim fault clear; ktsim fault KT_BLK_GetInfo 12 --times 1
  $ ktsim fault KT_DiskHasOS 1; ktsim fault KT_LD_GetTargetLDInfo 1
  $ kt info -o vd -i 2 | tail -5 | joined
  # of PDs:            2 | PD RAID setup:       ? 5  | Running OS:          unknown | BGA progress:    migration is 18% done |
  $ kt 1 info -o tandem | grep -E "setup|Total" | joined
  PD RAID setup:       11 6  | PD RAID setup:       11 7  | Total # of tandem:   2
  $ ktsim fault KT_LD_GetStatus 58; kt 1 info -o tandem | tail -n 1
  Could not get tandem info for VD ID 8 (error 58: Virtual disk is not ready to receive command)

What was interrupted, and lacks nothing, goes on after a boot.

  $ lab troubled; ktsim reboot; kt 1 info -o vd -i 11 | grep progress; kt 1 event | sed -n 's/^Description:  //p' | head -1
  BGA progress:    rebuilding is 33% done
  Rebuild disk on virtual disk 11 is auto resumed
