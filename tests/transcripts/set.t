Changing settings. `written` shows of each record that was handed to the library the bytes that differ from what was
read before, as "offset: old -> new", and the calls that change something without a record.

  $ . "$TESTDIR/setup.sh"
  $ written() {
  >   python3 - trace << 'END'
  > import re, sys
  > read = ""
  > for line in open(sys.argv[1]):
  >     if m := re.match(r"KT_\w+_GetConfig .*-> 0 \w+=([0-9a-f]+)$", line): read = m[1]
  >     elif m := re.match(r"(KT_\w+_SetConfig a=\d )(.*?)config=([0-9a-f]+) ", line):
  >         old, new = bytes.fromhex(read[-len(m[3]):]), bytes.fromhex(m[3])
  >         print(m[1] + m[2] + ", ".join(f"{i}: {a:02x} -> {b:02x}" for i, (a, b) in enumerate(zip(old, new)) if a != b))
  >     elif re.match(r"KT_(PD_SetHDStatus|AdapterMute|BBU_ChangePower) ", line): print(line.strip())
  > END
  >   : > trace
  > }

Virtual disks. What is asked for changes, and nothing else; what is so already is not written.

  $ lab default
  $ kt set -o vd -i 3 -n tapes
  virtual disk id:         3
  cache mode:              Off 
  read policy:             none
  name:                    tapes
  $ written
  KT_LD_SetConfig a=0 vd=3 4: 61 -> 74, 5: 72 -> 61, 6: 63 -> 70, 7: 68 -> 65, 8: 69 -> 73, 9: 76 -> 00, 10: 65 -> 00
  $ for words in "-c ON -p ra --waiveconfirmation" "-w wt" "-c auto" "-p none"; do kt set -o LD --id 3 $words | sed -n 2,3p; done
  cache mode:              On
  read policy:             ra
  cache mode:              Off 
  read policy:             ra
  cache mode:              Auto
  read policy:             ra
  cache mode:              Auto
  read policy:             none
  $ written
  KT_LD_SetConfig a=0 vd=3 2: 01 -> 04
  KT_LD_SetConfig a=0 vd=3 2: 04 -> 05
  KT_LD_SetConfig a=0 vd=3 2: 05 -> 0c
  KT_LD_SetConfig a=0 vd=3 2: 0c -> 08
  $ kt set -o vd -i 3 -p none -c auto -n tapes
  nothing to change
  $ written
  $ kt 1 set -o vd -i 3 --restore on | head -2
  virtual disk id:         3
  restore:                 on
  $ kt 1 set -o vd -i 3 --restore off -n home2 | head -2
  virtual disk id:         3
  restore:                 off
  $ written
  KT_LD_SetConfig a=1 vd=3 2: 00 -> 10
  KT_LD_SetConfig a=1 vd=3 2: 10 -> 00, 8: 00 -> 32

Disks and arrays.

  $ kt set -o pd -i 3 -c off --smart off --speed 3
  hard disk id:            3
  write cache:             off
  drive speed:             3 Gb/s
  SMART:                   off
  status:                  online
  $ kt info -o pd -i 3 | grep -e 'Write cache' -e SMART -e 'speed:'
  Write cache:         supported (off)
  SMART:               supported (off)
  supported speed:     1.5 Gb/s, 3 Gb/s, 6 Gb/s
  Current speed:       3 Gb/s
  $ kt set -o hd -i 3 -c on --smart on --speed 1.5 --waiveconfirmation | tail -4
  write cache:             on
  drive speed:             1.5 Gb/s
  SMART:                   on
  status:                  online
  $ kt set -o array -i 2 -n "cold store" -c off
  array id:                2
  write cache:             off
  name:                    cold store
  $ kt set -o array -i 2 -c on --waiveconfirmation | head -2
  array id:                2
  write cache:             on
  $ written
  KT_PD_SetConfig a=0 pd=3 0: 01 -> 00, 1: 01 -> 00, 3: 03 -> 02
  KT_PD_SetConfig a=0 pd=3 0: 00 -> 01, 1: 00 -> 01, 3: 02 -> 01
  KT_DG_SetConfig a=0 dg=2 2: 01 -> 00, 4: 61 -> 63, 5: 72 -> 6f, 6: 63 -> 6c, 7: 68 -> 64, 8: 69 -> 20, 9: 76 -> 73, 10: 65 -> 74, 11: 00 -> 6f, 12: 00 -> 72, 13: 00 -> 65
  KT_DG_SetConfig a=0 dg=2 2: 00 -> 01

An alarm that is silenced stays on.

  $ kt set -o hba --mute --alarm off > /dev/null
  $ kt set -o hba --mute | tail -1
  Alarm:                   off
  $ written
  KT_Adapter_SetConfig a=0 13: 01 -> 00
  KT_AdapterMute a=0 -> 0
  KT_AdapterMute a=0 -> 0
  $ kt 1 set -o driver
  
  Linux CLI needn't support :set -o driver.

The battery. What it does already is not done again.

  $ kt set -o bbu --power charge
  BBU status:              charging
  BBU charge:              95 %
  $ kt set -o bbu --power charge
  nothing to change
  $ kt set -o bbu --power stop | head -1
  BBU status:              idle
  $ kt set -o bbu --power stop
  nothing to change
  $ written
  KT_BBU_ChangePower a=0 action=1 -> 0
  KT_BBU_ChangePower a=0 action=0 -> 0

What can lose data is asked about: a cache that no battery keeps, a battery that caches need, a member. The end of input
declines.

  $ kt set -o vd -i 0 -w wt > /dev/null
  $ kt set -o vd -i 0 -w wb | head -2
  virtual disk id:         0
  cache mode:              On
  $ kt set -o bbu --power discharge < /dev/null
  VD 0 (boot) goes on writing to its cache without a battery.
  VD 1 (scratch) goes on writing to its cache without a battery.
  Do you still want to change the settings? (y or n)
  $ echo y | kt set -o bbu --power discharge | tail -2
  BBU status:              discharging
  BBU charge:              95 %
  $ written
  KT_LD_SetConfig a=0 vd=0 2: 00 -> 01
  KT_LD_SetConfig a=0 vd=0 2: 01 -> 00
  KT_BBU_ChangePower a=0 action=2 -> 0
  $ kt set -o vd -i 3 -c on < /dev/null
  No battery keeps what VD 3 has in its write cache: it will be lost when the power fails.
  Do you still want to change the settings? (y or n)
  $ kt set -o array -i 1 -c off > /dev/null
  $ echo n | kt set -o array -i 1 -c on
  No battery keeps the write cache of the disks of array 1: what it holds will be lost when the power fails.
  Do you still want to change the settings? (y or n)
  $ kt set -o pd -i 0 -c off > /dev/null
  $ echo maybe | kt set -o pd -i 0 -c on
  No battery keeps the write cache of PD 0: what it holds will be lost when the power fails.
  Do you still want to change the settings? (y or n)
  Please input y or n.
  $ written
  KT_DG_SetConfig a=0 dg=1 2: 01 -> 00
  KT_PD_SetConfig a=0 pd=0 0: 01 -> 00
  $ kt set -o pd -i 7 --status offline < /dev/null
  PD 7 is a member.
  VD 0 (boot) loses its redundancy.
  VD 1 (scratch) loses its redundancy.
  Do you still want to change the settings? (y or n)
  $ kt set -o pd -i 3 --status offline < /dev/null
  PD 3 is a member.
  VD 3 (tapes) loses part of its redundancy.
  Do you still want to change the settings? (y or n)
  $ written
  $ echo y | kt set -o pd -i 3 --status offline -c off
  PD 3 is a member.
  VD 3 (tapes) loses part of its redundancy.
  Do you still want to change the settings? (y or n)
  hard disk id:            3
  write cache:             off
  drive speed:             1.5 Gb/s
  SMART:                   on
  status:                  offline
  $ kt info -o vd -i 3 | grep status
  status:              partially optimal
  BGA status:          running
  $ kt set -o pd -i 4 --status offline < /dev/null
  PD 4 is a member.
  VD 3 (tapes) loses its redundancy.
  Do you still want to change the settings? (y or n)
  $ kt set -o pd -i 3 --status offline
  nothing to change
  $ kt set -o pd -i 3 --status online -c on --waiveconfirmation
  hard disk id:            3
  write cache:             on
  drive speed:             1.5 Gb/s
  SMART:                   on
  status:                  online
  $ kt set -o pd -i 3 --status online
  nothing to change
  $ written
  KT_PD_SetConfig a=0 pd=3 0: 01 -> 00
  KT_PD_SetHDStatus a=0 pd=3 status=0 -> 0
  KT_PD_SetHDStatus a=0 pd=3 status=1 -> 0
  KT_PD_SetConfig a=0 pd=3 0: 00 -> 01
  $ ktsim clock until idle > /dev/null
  $ kt 1 set -o pd -i 8 --status offline < /dev/null
  PD 8 is a member.
  VD 2 (spool) goes offline.
  Do you still want to change the settings? (y or n)
  $ kt 1 set -o pd -i 3 --status offline < /dev/null
  PD 3 is a member.
  VD 1 (media) loses its redundancy.
  Do you still want to change the settings? (y or n)

Everything has its effect: a matching spare was idle because the adapter does not rebuild by itself; a rebuild gets
slower.

  $ lab troubled
  $ kt info -o vd -i 0 | grep -e '^status' -e BGA
  status:              degraded
  BGA status:          N/A
  $ kt set -o hba --autorebuild on | grep Auto
  Auto Rebuild:            on
  $ kt info -o vd -i 0 | grep -e '^status' -e BGA
  status:              degraded
  BGA status:          running
  BGA progress:    rebuilding is 0% done
  $ cp state.db fast.db
  $ ktsim clock until idle
  Idle after 1 h 17 min.
  $ mv fast.db state.db
  $ kt set -o hba --rebuildrate 10 | grep Rebuild
  Auto Rebuild:            on
  Rebuild Rate:            10 %
  $ ktsim clock until idle
  Idle after 3 h 33 min.

What an adapter does not have is not set.

  $ ktsim create --force --lab - > /dev/null << 'END'
  > {"adapters": [{"type": "array-based", "config": {"AutoRebuildOn": 255}},
  >               {"type": "LD-based", "AlarmSupport": 0, "Features": 0, "AdvancedFeatures": 114688}]}
  > END
  $ : > trace; kt set -o hba --autorebuild on --mprate 10
  --autorebuild is not supported on adapter 0.
  [1]
  $ written
