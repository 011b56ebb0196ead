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
  $ calls | grep NVSRAM | cut -c1-90
  KT_Flash_NVSRAM a=0 action=0 data=02010000000100000000000000000000c3c3c3c3c3c3c3c3c3c3c3c3
  KT_Flash_NVSRAM a=0 action=0 data=020200002c0000000000000000000000c3c3c3c3c3c3c3c3c3c3c3c3
  KT_Flash_NVSRAM a=0 action=1 data=00010000090000000000000000000000000000000000000000000000
  $ kt nvsram -a read -s 0xFFFFFF00 -c 257
  -c : invalid byte counts '257'
  [1]

The two mailbox registers.

  $ kt register
  0 address register value is 0.
  $ kt register -a write -d 0x1 -v 0xFFFFFFFFF
  Write 1 address register successfully.
  $ kt register -d 1
  1 address register value is 68719476735.
  $ calls | grep Register
  KT_Adapter_Read_Register a=0 type=0 address=0 request=08100000000000000000000000000000 -> 0
  KT_Adapter_Write_Register a=0 type=0 address=1 request=0810000000000000ffffffff0f000000 -> 0
  KT_Adapter_Read_Register a=0 type=0 address=1 request=08100000000000000000000000000000 -> 0

The hybrid tier's table needs an adapter that has the tier; the example's second one has.

  $ kt tandem -o count -d 0
  Tandemix is not supported.
  [1]
  $ kt 1 tandem -o count -d 3
  Tandemix table total enties count 512
  Tandemix table remian enties count 512
  $ kt 1 tandem -o EMPTY -a 2048 -l 4096 -d 3
  $ kt 1 tandem -o delete -o count -d 3
  Tandemix table total enties count 512
  Tandemix table remian enties count 511
  $ kt 1 tandem -o delete -d 3
  $ calls | grep Tandemix
  KT_Tandemix_GetEntriesTableInfo a=1 vd=3 -> 0
  KT_Tandemix_AddFSEntries a=1 vd=3 request=0002000001000000000000000000000000080000000000000010000000000000 last=0 -> 0
  KT_Tandemix_GetEntriesTableInfo a=1 vd=3 -> 0
  KT_Tandemix_RemoveEntriesTable a=1 vd=3 -> 0
