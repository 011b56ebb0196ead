Spare disks and wiped disks: what becomes of a disk.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ echo n | kt assign -d 12
  PD 12 has file system on it. Data may get lost if it is assigned as spare disk.
  Are you sure you want to assign it as spare disk? (y or n)
  $ echo yes | kt assign -d 12
  PD 12 has file system on it. Data may get lost if it is assigned as spare disk.
  Are you sure you want to assign it as spare disk? (y or n)
  
  Failed to assign disk 12 as global spare disk (error 77: Disk space is too small to be assigned as spare drive).
  [77]
  $ kt assign -o array -d 11 -a 1
  
  Failed to assign disk 11 as a spare disk to array 1 (error 73: Physical disks are not of the same type.).
  [73]
  $ kt delete -o spare -i 10
  Delete the spare disk 10 successfully.
  $ kt delete -o spare -i 10
  PD 10 is not spare disk.
  $ kt assign -d 10
  
  Succeeded to assign the disk as a global spare disk.
  $ ktsim status | grep 'PD 1[012]'
    PD 10    Gannet GT4000G        SATA       3.6 TiB  global spare
    PD 11    Petrel PS480G SSD     SATA SSD 447.1 GiB  free
    PD 12    Gannet GT1000G        SATA     931.5 GiB  free
  $ kt 1 wipe -d 6
  
  Wipe MDD on PD 6 failed (error 56: Specified physical disk is assigned to a virtual disk).
  [56]
  $ kt wipe -d 12
  
  Wipe PD 12 is returned successfully.
  $ calls | grep -e Free -e Wipe | cut -d ' ' -f 1,3-
  KT_PD_FreeHD2GlobalSpare pd=12 -> 77
  KT_PD_FreeHD2DGSpare pd=11 dg=1 -> 73
  KT_PD_Spare2FreeHD pd=10 -> 0
  KT_PD_FreeHD2GlobalSpare pd=10 -> 0
  KT_PD_WipeHDMDD pd=6 force=0 -> 56
  KT_PD_WipeHDMDD pd=12 force=0 -> 0
