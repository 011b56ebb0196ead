What ktreport shows of adapters on which much is wrong; the problems' texts have a list of their own.

  $ . "$TESTDIR/setup.sh"
  $ lab troubled
  $ ktreport | sed -n '1s/ on .*, / on HOST, /p; /^ *and/p; /^  [01]   [1-7]  [a-z]/d; /^  1  .*x  S/d; /^  0   1 x  SAS/d; /^  1  v/d; /^Going/,$p'
  28 problems on HOST, 7 critical
            and 16 more (--all shows them)
  Going on
    0  virtual disk 1 "rebuilding"                                                 rebuild          42 %
    0  virtual disk 2 "migrating"                                                  migration        18 %
    0  virtual disk 4 "checking"                                                   check and fix    73 %
    0  virtual disk 5 "paused"                                                     background init   5 %  paused
    0  disk 13 (slot 13 of enclosure 1, Fulmar FX1000G-SAS, serial SG000001308CB)  media patrol     61 %
  
  Adapters
    0  Tarn R8i  serial KS260100004711  firmware 4.1.15.2108  19 disks  battery 9 %, discharging
    1  Tarn S4h  serial KS260101004718  firmware 2.3.0.1114   19 disks  no battery
  
  Arrays
       id  name        level  status          size    free  disks      spares
    0   0  degraded    RAID5  disk missing  2.0 TB  1.6 TB  0 1 -
  
  Virtual disks
       id  name          level        status                size  cache  disks
    0   0  degraded      RAID5        degraded            429 GB  off    0 1 -
    1   0  degraded      RAID5        degraded            322 GB  on     0 1 - 2
    1   8  table         TANDEM SAFE  using table         107 GB  on     11 6
    1  11  interrupted   RAID1        degraded           53.7 GB  on     15 16
    and 6 more (--all lists them)
    and 6 more (--all lists them)
  
  Disks
             type        size  model               role          disks
    0  13 x  SAS       1.0 TB  Fulmar FX1000G-SAS  member        0 1 2 3 4 5 6 7 8 9 10 11 ...
    0   2 x  SATA      1.0 TB  Gannet GT1000G      foreign       15 16
    0   1 x  SATA      250 GB  Gannet GT250G       free          18
  $ ktreport --all -a 1 | sed -n '/^Disks/{n;N;p;}'
       id  type        size  model              serial         role     place
    1   0  SATA      1.0 TB  Gannet GT1000G     AG01000000101  member   port 0
  $ ktreport check
  RAID CRITICAL - Virtual disk 3 "lost" on adapter 0 is offline: its data cannot be reached. Virtual disk 6 "offline" on adapter 1 is offline: its data cannot be reached. Disk 14 (slot 14 of enclosure 1, Fulmar FX1000G-SAS, serial SG0000014A702) on adapter 0 has failed; no virtual disk uses it. Virtual disk 0 "degraded" on adapter 0 (RAID5) has no redundancy left: one more loss of a disk loses data. And 24 more. | critical=7;;0;0 warning=21;0;;0 unread=0;;;0 adapters=2;;;0 virtualdisks=19;;;0 disks=38;;;0 hottest=40
  [2]
  $ ktreport map -a 1 | sed -n '1,3p; $p'
  adapter  place            disk  type        size  model              serial         state    use                                                             LED
        1  port 0              0  SATA      1.0 TB  Gannet GT1000G     AG01000000101  healthy  virtual disk 0 "degraded"                                       off
        1  port 1              1  SATA      1.0 TB  Gannet GT1000G     AG01000019F38  healthy  virtual disk 0 "degraded"                                       off
  A disk's LED: ktsetup <adapter> locate -i <disk> -a on
