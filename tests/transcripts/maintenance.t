NVSRAM bytes are written with a pattern and read as a dump.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt nvsram -a write -s 0x102 -c 300 -p 0xC3
  
  256 bytes have been written into nvsram!
  
  44 bytes have been written into nvsram!
  $ kt nvsram -a read -s 256 -c 9
  nvsram offset at : 0x00000100
  0x00\t0x00\t0xc3\t0xc3\t0xc3\t0xc3\t0xc3\t0xc3\t (esc)
  0xc3\t (no-eol) (esc)

The two mailbox registers.

  $ kt register -a write -d 0x1 -v 0xFFFFFFFFF
  Write 1 address register successfully.
  $ kt register -d 1
  1 address register value is 68719476735.

The hybrid tier's table needs an adapter that has the tier; the example's second one has.

  $ kt tandem -o count -d 0
  Tandemix is not supported.
  [1]
  $ kt 1 tandem -o EMPTY -a 2048 -l 4096 -d 3
  $ kt 1 tandem -o delete -o count -d 3
  Tandemix table total enties count 512
  Tandemix table remian enties count 511
  $ kt 1 tandem -o delete -d 3

The numbers that stand for disks in the operating system: all virtual disks, all free disks, or the one asked for.

  $ kt 1 devmap -o vd | head -2
  Device ID:           0
  Magic Number:        CCEB0A55753C744AB6E4
  $ kt 1 devmap -o PDs
  Device ID:           7
  Magic Number:        4CE723F910759374B1F0
  $ kt 1 devmap -o vd -i 9
  Fail! (error 8: Invalid virtual disk id).
  [8]
  $ calls | grep -e NVSRAM -e Register -e Tandem | cut -c1-100
  KT_Flash_NVSRAM a=0 action=0 data=02010000000100000000000000000000c3c3c3c3c3c3c3c3c3c3c3c3c3c3c3c3c3
  KT_Flash_NVSRAM a=0 action=0 data=020200002c0000000000000000000000c3c3c3c3c3c3c3c3c3c3c3c3c3c3c3c3c3
  KT_Flash_NVSRAM a=0 action=1 data=000100000900000000000000000000000000000000000000000000000000000000
  KT_Adapter_Write_Register a=0 type=0 address=1 request=0810000000000000ffffffff0f000000 -> 0
  KT_Adapter_Read_Register a=0 type=0 address=1 request=08100000000000000000000000000000 -> 0
  KT_Tandemix_AddFSEntries a=1 vd=3 request=0002000001000000000000000000000000080000000000000010000000
  KT_Tandemix_GetEntriesTableInfo a=1 vd=3 -> 0
  KT_Tandemix_RemoveEntriesTable a=1 vd=3 -> 0
  KT_Tandem_GetVDMagic a=1 count=4 magics=000000000000000000000000000000000000000000000000000000000000
  KT_Tandem_GetHDMagic a=1 count=1 magics=070000000000000000000000000000000000000000000000000000000000
