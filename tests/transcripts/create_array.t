Arrays and the virtual disks in them, from the first disk to a full array, with the records that are sent.

  $ . "$TESTDIR/setup.sh"
  $ sent() { python3 "$TESTDIR/record.py" "$1" < trace; : > trace; }
  $ lab empty
  $ kt create -o array -r 10 -d 0,1,2,3 --sizeonly
  
  Arry of size 0x0003a37a2 M can be created by the given parameters
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
  $ kt create -a 0 -s 99999999
  
  No resources. Max available size is 3810330 M
  [4]
  $ kt create -a 0 -n rest
  Create VD 1 successfully.
  $ kt create -a 0
  
  No resources. Max available size is 0 M
  [4]
  $ kt info -o vd | grep -e ^id -e ^name -e ^size -e 'Cache mode'
  id:                  0
  name:                VD_R10_1
  Cache mode:          On 
  size:                5000 M
  id:                  1
  name:                rest
  Cache mode:          On 
  size:                3810330 M

Disks that cannot be used, or only when somebody says so.

  $ lab default
  $ echo N | kt create -o array -r 1 -d 11,12
  PD 12 has file system on it. Data will be lost if it is used to create array.
  Do you still want to create the VD? (y or n)
  $ kt create -o array -r 1 -d 10,11
  Spare disk 10 can not be used to create array.
  [1]
  $ kt create -o auto
  Auto create error,Resource not available
  [4]
