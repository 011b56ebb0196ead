Arrays with their space, slots and disks; what else they can be like is compared with reports.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt info -o array -i 1
  
  Array Information
  -------------------------
  ID:                  1
  Name:                databases
  Stripe size:         64
  Block size:          512
  RAID mode:           RAID5
  Total space:         3815330 M
  Remaining space:     1718178 M
  Member used space:   1907665 M
  Total array slot:    2
    slot 0: VD 2, 2097152 M
    slot 1: free, 1718178 M
  # of PDs:            3
  PD IDs:              0 1 2
  # of spare PDs:      1
  Spare PD IDs:        9
  BGA status:          none
  Status:              functional
  
