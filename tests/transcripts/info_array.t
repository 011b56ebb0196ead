Arrays with their space, slots and disks.

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
  
  $ kt info -o array | grep 'Total #'
  Total # of array:    3
  $ lab troubled
  $ kt info -o array | grep -e '^ID' -e '^Status' -e '^BGA'
  ID:                  0
  BGA status:          none
  Status:              At least one PD is missing from this array
  ID:                  1
  BGA status:          rebuilding
  Status:              functional
  ID:                  2
  BGA status:          migration
  Status:              functional
  ID:                  3
  BGA status:          none
  Status:              offline
  ID:                  4
  BGA status:          synchronizing
  Status:              functional
  ID:                  5
  BGA status:          none
  Status:              functional
