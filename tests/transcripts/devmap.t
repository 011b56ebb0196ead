The numbers that stand for disks in the operating system: all virtual disks, all free disks, or the one asked for.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt 1 devmap -o vd
  Device ID:           0
  Magic Number:        CCEB0A55753C744AB6E4
  Device ID:           1
  Magic Number:        E0CF80FF3492ADD8F5CD
  Device ID:           2
  Magic Number:        B54D95AC681B301D98ED
  Device ID:           3
  Magic Number:        9D583EB0145FB3CCAB02
  $ kt 1 devmap -o PDs
  Device ID:           7
  Magic Number:        4CE723F910759374B1F0
  $ kt 1 devmap -o pd -i 0x3
  Device ID:           3
  Magic Number:        0ED6690B2D1D2DE65A35
  $ kt 1 devmap -o vd -i 9
  Fail! (error 8: Invalid virtual disk id).
  [8]
  $ kt 0 devmap -o vd
  Fail! (error 160: This command is not supported on this adapter).
  [160]
