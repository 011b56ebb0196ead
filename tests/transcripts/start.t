Starting: the adapter's index, "-output", the driver and the library.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ ktsetup ver
  SG driver version 3.5.36.
  CLI Version: 4.1.0.15   RaidAPI Version: 4.1.0.15 (simulated)
  $ ktsetup 1 adapter
  SG driver version 3.5.36.
  Total number of adapters: 2
  Current default adapter ID for CLI commands: 1
  $ ktsetup 257 adapter
  SG driver version 3.5.36.
  Total number of adapters: 2
  Current default adapter ID for CLI commands: 1
  $ ktsetup 200 info -o vd
  SG driver version 3.5.36.
  
  Unable to get info of vd (error 13: Invalid adapter id)
  [13]

The library is opened before anything else and closed last; every adapter's record is read once.

  $ calls > /dev/null
  $ ktsetup error -c 0
  SG driver version 3.5.36.
  
  Error code 0: No error.
  $ calls | cut -d ' ' -f 1,2
  KT_API_Initialize ->
  KT_Adapter_GetCount ->
  KT_SIM_SgVersion ->
  KT_Adapter_GetInfo a=0
  KT_Adapter_GetInfo a=1
  KT_API_Finalize ->

A word that is no command; exit and its like leave at once.

  $ kt se
  Ambiguous command 'se'!
  [1]
  $ kt exit
  [255]
  $ kt VERS
  CLI Version: 4.1.0.15
  RaidAPI Version: 4.1.0.15 (simulated)

No adapter, and a library that cannot start.

  $ lab none
  $ ktsetup ver
  No adapter is found.
  SG driver version 3.5.36.
  CLI Version: 4.1.0.15   RaidAPI Version: 4.1.0.15 (simulated)
  $ lab full
  $ ktsetup adapter
  SG driver version 3.5.36.
  Total number of adapters: 16
  Current default adapter ID for CLI commands: 0
  $ echo junk > state.db
  $ ktsetup ver 2> /dev/null
  KT_API_Initialize() failed!
  [1]
