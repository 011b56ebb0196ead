Physical disks, the blocks on them, spares, and arrays; what else they can be like is compared with reports.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt info -o pd -i 0 | sed 9,18d
  
  Physical Disk Information
  ----------------------------
  Adapter:             0
  PD ID:               0
  Type:                SAS
  Linked at:           Expander 0, port 0
  SAS address:         500C2A7100100000
  Locate LED status:   off
  Running OS:          no
  PD valid size:       1953449048 K
  Block ids:           4 
  
  $ calls | cut -d ' ' -f 1,2 | sed 1,6d | joined
  KT_PD_GetConfig a=0 | KT_DiskHasOS a=0 | KT_PD_GetBGAStatus a=0 | KT_PD_GetFreeSpaceInfo a=0 | KT_BLK_GetHDBlock a=0 | KT_API_Finalize ->
  $ kt 1 info -o hd | grep Total
  Total # of PD:       10
  $ kt info -o blk -i 3 | sed 6,9d
  
  Block Disk Information
  -------------------------
  Block ID:            3
  PD ID:               8
  Size:                838860800 sectors
  
  $ kt info -o spare | sed 5,11d
  
  Spare Drive Information
  -------------------------
  PD ID:               9
  
  Total # of spare:    2
  
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
  

What the library refuses is told and ends the listing.

  $ lab default; ktsim fault KT_PD_GetConfig 19; kt info -o pd -i 0 | grep -e 'Write cache' -e SMART -e 'Current speed'
  Write cache:         supported
  SMART:               supported
  Current speed:       unknown
  $ ktsim fault KT_PD_GetFreeSpaceInfo 58 --after 1; kt info -o pd | grep -e '^PD ID' -e Unable -e Total
  PD ID:               0
  PD ID:               1
  Unable to get info of PD (error 58: Virtual disk is not ready to receive command)
