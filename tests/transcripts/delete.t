Deleting virtual disks and arrays: what is asked, and that nothing goes without a yes.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ printf 'y\nn\n' | kt 1 delete -o vd -i 1
  Are you sure you want to delete this virtual disk? (y or n)
  
  VD 1 is rebuilding, do you still want to delete it? (y or n)
  $ printf 'maybe\ny\nY\n' | kt 1 delete -o vd -i 1
  Are you sure you want to delete this virtual disk? (y or n)
  Please input y or n.
  
  VD 1 is rebuilding, do you still want to delete it? (y or n)
  Delete VD 1 successfully.
  $ kt 1 delete -o vd -i 1 --waiveconfirmation
  
  Unable to get status of VD 1 (error 8: Invalid virtual disk id).
  [1]
  $ kt delete -o array -i 1 --waiveconfirmation
  Failed to delete array 1 (error 76: At least one virtual disk is on the specified array).
  [76]
  $ kt delete -o ld -i 2 --waiveconfirmation
  Delete VD 2 successfully.
  $ echo y | kt delete -o array -i 1
  Are you sure you want to delete this array? (y or n)
  Delete array 1 successfully.
  $ calls | grep -e Delete -e Control
  KT_LD_BGAControl a=1 vd=1 control=7 -> 0
  KT_LD_Delete a=1 vd=1 stopBga=1 -> 0
  KT_DG_Delete a=0 dg=1 -> 76
  KT_LD_Delete a=0 vd=2 stopBga=1 -> 0
  KT_DG_Delete a=0 dg=1 -> 0
  $ ktsim status | grep Array
    Array 0  system           RAID1        745.2 GiB  functional, 245.2 GiB free
    Array 2  archive          RAID6          7.3 TiB  functional, full
