The settings of disks, arrays, virtual disks and adapters, and the links of hybrid virtual disks.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt get -o pd -i 3
  hard disk id:            3
  write cache:             on
  drive speed:             6 Gb/s
  $ kt get -o HD -i 0
  hard disk id:            0
  write cache:             on
  drive speed:             12 Gb/s
  $ kt get -o array
  array id:                0
  write cache:             on
  array id:                1
  write cache:             on
  array id:                2
  write cache:             on
  $ kt get -o ld -i 3
  virtual disk id:         3
  cache mode:              Off 
  $ kt 1 get -o vd -i 3
  virtual disk id:         3
  restore:                 off
  cache mode:              On
  $ kt get -o hba
  HBA Index:               0
  Auto Rebuild:            on
  Optimize CPU efficiency: off
  BGA Rate:                50 %
  Syncronization Rate:     50 %
  Initialization Rate:     50 %
  Rebuild Rate:            50 %
  Migration Rate:          50 %
  Copyback Rate:           50 %
  Media Patrol Rate:       50 %
  Poll SMART Status:       on
  Copy Back:               on
  Module Consolidation:    off
  Raw Update:              on
  Model:                   Tarn R8i
  $ kt 0 get -o hba -i 1 | grep -e HBA -e Model
  HBA Index:               1
  Model:                   Tarn S4h
  $ kt get -o hba -i 2
  
  Unable to get configuration info of hba 2 (error 13: Invalid adapter id)
  [13]
  $ kt get -o driver
  
  Linux CLI needn't support :get -o driver.

  $ kt get -o pd -i 200
  
  Unable to get configuration of hard disk 200 (error 9 : Invalid physical disk id).
  [9]
  $ kt get -o array -i 9
  
  Unable to get configuration of array 9 (error 17: Invalid array id)
  [17]
  $ kt get -o vd -i 9
  
  VD 9 is invalid (error 8: Invalid virtual disk id)
  [8]
  $ ktsim fault KT_Adapter_GetConfig 6
  $ kt get -o hba
  
  Unable to get configuration info of hba 0 (error 6: Invalid request)
  [6]

  $ ktsim fault clear
  $ ktsim fault KT_PD_GetConfig 1
  $ ktsim fault KT_DG_GetConfig 4
  $ ktsim fault KT_LD_GetConfig 5
  $ for object in pd array vd; do kt get -o $object; echo "= $?"; done
  
  Unable to get configuration of hard disk 255 (error 1 : Failed).
  = 1
  
  Unable to get configuration of array 255 (error 4: Resource not available)
  = 4
  
  VD 255 is invalid (error 5: Data out of range)
  = 5
  $ ktsim fault clear

  $ kt 1 get -o link
  VD 0 ATA is unlinked.
  VD 1 ATA is unlinked.
  VD 2 ATA is unlinked.
  VD 3 ATA is unlinked.
  $ ktsim fault KT_LD_GetInfo 5
  $ kt get -o link -i 0
  
  VD 0 is invalid (error 5: Data out of range)
  [5]

  $ ktsim create --force --lab - > /dev/null << 'END'
  > {"adapters": [{"type": "array-based"}]}
  > END
  $ for object in pd array vd link; do kt get -o $object; done
  
  No PD is found
  
  No array is found
  
  No VD is found
  
  No VD is found

Disks are read page by page: a buffer of 1 KiB holds 126.

  $ ktsim create --force --lab - > /dev/null << 'END'
  > {"adapters": [{"type": "array-based", "MaxBufferSize": 1, "MaxHD_Ext": 300, "disks": [{"count": 300}]}]}
  > END
  $ calls > /dev/null
  $ kt get -o pd | grep 'hard disk id' | tail -1
  hard disk id:            299
  $ calls | grep -c KT_PD_GetConfig
  3
