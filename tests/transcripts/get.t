The settings of disks, arrays, virtual disks and adapters, and the links of hybrid virtual disks.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt get -o pd -i 3
  hard disk id:            3
  write cache:             on
  drive speed:             6 Gb/s
  $ kt get -o HD | grep -c '^drive speed'
  13
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
  $ kt get -o driver
  
  Linux CLI needn't support :get -o driver.
  $ kt 1 get -o link | head -1
  VD 0 ATA is unlinked.

What there is not, and what the library refuses.

  $ for object in hba array vd pd; do kt get -o $object -i 200; echo "= $?"; done
  
  Unable to get configuration info of hba 200 (error 13: Invalid adapter id)
  = 13
  
  Unable to get configuration of array 200 (error 17: Invalid array id)
  = 17
  
  VD 200 is invalid (error 8: Invalid virtual disk id)
  = 8
  
  Unable to get configuration of hard disk 200 (error 9 : Invalid physical disk id).
  = 9
  $ ktsim fault KT_Adapter_GetConfig 6
  $ ktsim fault KT_PD_GetConfig 1
  $ ktsim fault KT_DG_GetConfig 4
  $ ktsim fault KT_LD_GetConfig 5
  $ ktsim fault KT_LD_GetInfo 5
  $ for object in hba pd array vd link; do kt get -o $object -i 0; echo "= $?"; done
  
  Unable to get configuration info of hba 0 (error 6: Invalid request)
  = 6
  
  Unable to get configuration of hard disk 0 (error 1 : Failed).
  = 1
  
  Unable to get configuration of array 0 (error 4: Resource not available)
  = 4
  
  VD 0 is invalid (error 5: Data out of range)
  = 5
  
  VD 0 is invalid (error 5: Data out of range)
  = 5
  $ kt get -o pd
  
  Unable to get configuration of hard disk 255 (error 1 : Failed).
  [1]
  $ ktsim create --force --lab - > /dev/null << 'END'
  > {"adapters": [{"type": "array-based"}]}
  > END
  $ for object in pd array vd link; do kt get -o $object; done
  
  No PD is found
  
  No array is found
  
  No VD is found
  
  No VD is found
