NVSRAM bytes are written with a pattern and read as a dump.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt nvsram -a write -s 0x102 -c 300 -p 0xC3 > /dev/null
  $ kt nvsram -a read -s 256 -c 9
  nvsram offset at : 0x00000100
  0x00\t0x00\t0xc3\t0xc3\t0xc3\t0xc3\t0xc3\t0xc3\t (esc)
  0xc3\t (no-eol) (esc)

The numbers that stand for disks in the operating system: all virtual disks, all free disks, or the one asked for.

  $ kt 1 devmap -o vd | head -2
  Device ID:           0
  Magic Number:        CCEB0A55753C744AB6E4
  $ kt 1 devmap -o PDs
  Device ID:           7
  Magic Number:        4CE723F910759374B1F0
