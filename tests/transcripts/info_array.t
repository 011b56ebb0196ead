Arrays with their space, slots and disks; what else they can be like is compared with reports.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt info -o array -i 1 | sed '7,11d; 16,19d'
  
  Array Information
  -------------------------
  ID:                  1
  Name:                databases
  Stripe size:         64
  Total array slot:    2
    slot 0: VD 2, 2097152 M
    slot 1: free, 1718178 M
  # of PDs:            3
  Status:              functional
  
