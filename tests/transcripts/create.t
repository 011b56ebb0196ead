Virtual disks straight from physical disks: their records, the question, and what stands in the way.

  $ . "$TESTDIR/setup.sh"
  $ sent() { python3 "$TESTDIR/record.py" "$1" < trace; : > trace; }
  $ cat > lab.json <<'END'
  > {"name": "disks", "adapters": [{"type": "LD-based", "disks": [
  >   {"count": 4, "type": "SATA", "size": "1TB"}, {"count": 2, "type": "SATA", "size": "1TB", "mbr": true},
  >   {"type": "SATA", "size": "1TB", "spare": "global"}, {"type": "SATA", "size": "1TB", "state": "offline"},
  >   {"type": "SATA", "size": "1TB", "state": "foreign"}]}]}
  > END
  $ lab lab.json
  $ kt maxcreatesize -r 5 -d 0,1,2
  
  The maxsize that VD can create with is:   1953394048 K
  $ kt create -r 1 -d 0,1 -n "My VD" -s 5000 -i none --forcesize -c off -p ra -b 128
  $ sent KT_LD_Create
  RaidMode 1
  HDCount 2
  StripeBlockSize 128
  CachePolicy 5
  InitializationOption 3
  SectorCoefficient 1
  ReservedForApp 1
  HDIDs 0 1
  Name 'My VD'
  Size 5000
  $ kt create -r 0 -d 3,2,3 -s 5000 -i none
  $ kt info -o vd | grep -e ^name -e 'Stripe size' -e ^size -e setup
  name:                My VD
  Stripe size:         128
  size:                5000 M
  PD RAID setup:       0 1 
  name:                VD_R0_2
  Stripe size:         64
  size:                1907611 M
  PD RAID setup:       3 2 
  $ kt create -r 1 -d 3,2
  Non-free disk 3 can not be used to create VD.
  [1]

Whoever has data on a disk is asked; the end of the input declines.

  $ : > trace
  $ kt create -r 1 -d 4,5 < /dev/null
  PD 4 5 have file system on them. Data will be lost if they are used to create VD.
  Do you still want to create the VD? (y or n)
  $ calls | grep -c KT_LD_Create
  0
  [1]
  $ echo sure | kt create -r 1 -d 4,5 -n first
  PD 4 5 have file system on them. Data will be lost if they are used to create VD.
  Do you still want to create the VD? (y or n)
  $ calls | grep -c KT_LD_Create
  1
  $ for disk in 6 7 8 99; do kt create -r 0 -d $disk,0; done
  Spare disk 6 can not be used to create VD.
  Offline disk 7 can not be used to create VD.
  Foreign disk 8 can not be used to create VD.
  Failed to get status for PD 99 (error 9: Invalid physical disk id)
  [1]
