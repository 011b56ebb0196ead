Virtual disks straight from physical disks: their names and records, the questions, and what stands in the way.

  $ . "$TESTDIR/setup.sh"
  $ sent() { python3 "$TESTDIR/record.py" "$1" < trace; : > trace; }
  $ changes() { calls | cut -d ' ' -f 1 | grep -e Create -e Delete -e Modify; }
  $ cat > lab.json <<'END'
  > {"name": "disks", "adapters": [{"type": "LD-based", "disks": [
  >   {"count": 4, "type": "SATA", "size": "1TB"}, {"count": 2, "type": "SATA", "size": "1TB", "mbr": true},
  >   {"type": "SATA", "size": "1TB", "spare": "global"}, {"type": "SATA", "size": "1TB", "state": "offline"},
  >   {"type": "SATA", "size": "1TB", "state": "foreign"}]}]}
  > END
  $ lab lab.json
  $ kt maxcreatesize -r 5 -d 0,1,2
  
  The maxsize that VD can create with is:   1953394048 K
  $ kt create -o vd -r 5 -d 2,0,1,0
  $ sent KT_LD_Create
  RaidMode 5
  HDCount 3
  StripeBlockSize 64
  CachePolicy 1
  SectorCoefficient 1
  HDIDs 2 0 1
  Name 'VD_R5_1'
  $ kt info -o vd | grep -e ^id -e ^name -e mode -e ^size -e PDs -e setup
  id:                  0
  name:                VD_R5_1
  RAID mode:           RAID5
  Cache mode:          Off 
  size:                1907611 M
  # of PDs:            3
  PD RAID setup:       2 0 1 
  $ kt create -r 1 -d 3,2
  Non-free disk 2 can not be used to create VD.
  [1]
  $ lab lab.json
  $ kt create -r 0 -d 0,1 -n "My VD" -s 5000 -i none --forcesize -c off -p ra -b 128
  $ kt create -r 0 -d 2,3 -s 5000 -i none
  $ sent KT_LD_Create
  HDCount 2
  StripeBlockSize 64
  CachePolicy 1
  InitializationOption 3
  SectorCoefficient 1
  HDIDs 2 3
  Name 'VD_R0_2'
  $ kt info -o vd | grep -e ^name -e 'Stripe size' -e ^size
  name:                My VD
  Stripe size:         128
  size:                5000 M
  name:                VD_R0_2
  Stripe size:         64
  size:                1907611 M

Whoever has data on a disk is asked; the end of the input declines.

  $ kt create -r 1 -d 4,5 < /dev/null
  PD 4 5 have file system on them. Data will be lost if they are used to create VD.
  Do you still want to create the VD? (y or n)
  $ changes
  [1]
  $ echo no | kt create -r 1 -d 4,5
  PD 4 5 have file system on them. Data will be lost if they are used to create VD.
  Do you still want to create the VD? (y or n)
  $ changes
  [1]
  $ echo sure | kt create -r 1 -d 4,5 -n first
  PD 4 5 have file system on them. Data will be lost if they are used to create VD.
  Do you still want to create the VD? (y or n)
  $ changes
  KT_LD_Create

  $ kt create -r 0 -d 6,0
  Spare disk 6 can not be used to create VD.
  [1]
  $ kt create -r 0 -d 7,0
  Offline disk 7 can not be used to create VD.
  [1]
  $ kt create -r 0 -d 8,0
  Foreign disk 8 can not be used to create VD.
  [1]
  $ kt create -r 0 -d 99,0
  Failed to get status for PD 99 (error 9: Invalid physical disk id)
  [1]
  $ kt create -r 1e -d 0,1,2,3
  RAID1E needs at least 3 or more odd number of PDs.
  [1]
  $ kt create -r 50 -d 0,1,2,3
  Specified RAID mode is not supported.
  [1]
  $ kt create -r 6 -q 3 -d 0,1,2,3
  Number of parity disks should be at least 2 and less than 2.
  [1]
  $ kt create -r 0 -d 0,1 -b 8
  -b : invalid stripe block size '8'.Please refer to info -o hba command to get detail stripe size support information.
  [1]
  $ kt maxcreatesize -r 1 -d 0,1,2
  RAID1 needs exactly 2 PDs.
  [1]
  $ changes
  [1]
