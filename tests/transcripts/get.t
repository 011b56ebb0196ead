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
