Starting: the adapter's index, "-output", the driver and the library.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ ktsetup ver | grep -cF "CLI Version: $VERSION   RaidAPI Version: $VERSION (simulated)"
  1
  $ for adapter in 1 257; do ktsetup $adapter adapter | tail -1; done | uniq -c
        2 Current default adapter ID for CLI commands: 1
  $ ktsetup 200 info -o vd
  SG driver version 3.5.36.
  
  Unable to get info of vd (error 13: Invalid adapter id)
  [13]

The library is opened before anything else and closed last; every adapter's record is read once.

  $ calls > /dev/null
  $ ktsetup error -c 0
  SG driver version 3.5.36.
  
  Error code 0: No error.
  $ calls | cut -d ' ' -f 1,2 | joined
  KT_API_Initialize -> | KT_Adapter_GetCount -> | KT_SIM_SgVersion -> | KT_Adapter_GetInfo a=0 | KT_Adapter_GetInfo a=1 | KT_API_Finalize ->

A word that is no command; exit and its like leave at once.

  $ kt se; kt exit
  Ambiguous command 'se'!
  [255]

An adapter whose record cannot be read: nobody knows what it is, so it can be looked at, but not be changed.

  $ ktsim fault KT_Adapter_GetInfo 20 --times 100
  $ kt info -o vd -i 0 | grep name
  name:                boot
  $ : > trace; echo image > fw; kt delete -o vd -i 0 --waiveconfirmation
  
  Unable to get info of adapter 0 (error 20: Link time out).
  [20]
  $ while read -r -d ';' line; do kt $line > said; echo "$? $(grep -c "Unable to get info of adapter" said)"; done << EOF | uniq -c
  >   create -r 1 -d 6,7; assign -d 6; wipe -d 6; init -l 0; mp -d 0; migrate -a start -l 0 -d 6; import -i 0; report -i 0;
  >   locate -i 0 -a on; pause -c 0; register -a write -d 0 -v 1; nvsram -a write -p 0x55; flash -a update -t bios -f fw;
  >   flash -a erase -t raw; forceonline -i 0; tandem -o empty -d 0; aesop -o changePwd -e 0 -p new -w old;
  >   aesentry -o setCfg -i 0 -p word -k key; aesport -o dismount -i 0; set -o pd -i 0 --smart on; ssd -d 7 -a start;
  >   ssdop -d 7 -f fw;
  > EOF
  *22 20 1 (glob)
  $ ktcfg restore_cfg -f fw | tail -1
  Unable to get info of adapter 0 (error 20: Link time out).
  $ grep -vE 'KT_(API|SIM)_|Get' trace
  [1]
  $ ktsetup 5 delete -o vd -i 0 --waiveconfirmation | tail -1
  Unable to get status of VD 0 (error 13: Invalid adapter id).

No adapter, and a library that cannot start.

  $ lab none; ktsetup ver
  No adapter is found.
  SG driver version 3.5.36.
  CLI Version: *   RaidAPI Version: * (simulated) (glob)
  $ lab full; ktsetup adapter | sed -n 2p
  Total number of adapters: 16
  $ echo junk > state.db; ktsetup ver 2> /dev/null
  KT_API_Initialize() failed!
  [1]
