Arrays and the virtual disks in them, from the first disk to a full array, with the records that are sent.

  $ . "$TESTDIR/setup.sh"
  $ sent() { python3 "$TESTDIR/record.py" "$1" < trace; : > trace; }
  $ lab empty
  $ kt create -o array -r 10 -d 0,1,2,3 --sizeonly
  
  Arry of size 0x0003a37a2 M can be created by the given parameters
  $ kt info -o array
  No array is found.
  $ kt create -o array -r 10 -d 0,1,2,3 -b 32 -i background
  Create array 0 successfully.
  $ sent KT_CreateOrModify_DG
  DGID 65535
  Name 'DG_R10_1'
  RaidMode 16
  StripeBlockSize 32
  BlockSize 512
  InitializationOption 2
  PDCount 4
  PDIDs 0 1 2 3
  $ kt create -o array -r 1 -d 4,5 -n "sixteen letters_" --cacheoff
  Create array 1 successfully.
  $ kt get -o array
  array id:                0
  write cache:             on
  array id:                1
  write cache:             off
  $ kt create -a 0 -s 5000 -g 1 -p ra -i none
  Create VD 0 successfully.
  $ sent KT_CreateOrModify_VD
  VDID 65535
  Name 'VD_R10_1'
  RaidMode 16
  SubVDCount 2
  DGSlotNum 255
  StripeBlockSize 32
  Size 5000
  RoundingScheme 1
  CachePolicy 4
  InitializationOption 3
  SectorCoefficient 1
  BlockSize 512
  $ kt create -a 0 -l 0
  Slot number 0 has already occupied by VD 0
  [1]
  $ kt create -a 0 -s 99999999
  
  No resources. Max available size is 3810330 M
  [4]
  $ kt create -a 0 -n rest
  Create VD 1 successfully.
  $ kt create -a 0
  
  No resources. Max available size is 0 M
  [4]
  $ kt create -a 9
  Unable to get info for array 9  (error 17: Invalid array id)
  [17]
  $ kt info -o vd | grep -e ^id -e ^name -e ^size -e 'Cache mode'
  id:                  0
  name:                VD_R10_1
  Cache mode:          On 
  size:                5000 M
  id:                  1
  name:                rest
  Cache mode:          On 
  size:                3810330 M

A disk with a file system on it, a disk of other sectors, a spare.

  $ cat > lab.json <<'END'
  > {"name": "disks", "adapters": [{"type": "array-based", "disks": [
  >   {"count": 2, "type": "SATA", "size": "1TB"}, {"type": "SATA", "size": "1TB", "mbr": true},
  >   {"type": "SATA", "size": "1TB", "spare": "global"}, {"type": "SATA", "size": "1TB", "BlockSize": 4096}]}]}
  > END
  $ lab lab.json
  $ echo N | kt create -o array -r 5 -d 0,1,2
  PD 2 has file system on it. Data will be lost if it is used to create array.
  Do you still want to create the VD? (y or n)
  $ kt info -o array
  No array is found.
  $ kt create -o array -r 5 -d 0,1,3
  Spare disk 3 can not be used to create array.
  [1]
  $ kt create -o array -r 5 -d 0,1,4
  All PDs should have the same sector size, PD 4 has sector size 4096
  [1]
  $ kt create -o array -r 5 -d 0,1,2 --waiveconfirmation
  Create array 0 successfully.
  $ kt create -o auto
  Auto create error,Resource not available
  [4]
