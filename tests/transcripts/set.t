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
  $ for words in "-n tapes" "-c ON -p ra --waiveconfirmation" "-w wt" "-c auto" "-p none"; do kt set -o LD --id 3 $words | sed -n '2,3p' | joined; done
  cache mode:              Off  | read policy:             none
  cache mode:              On | read policy:             ra
  cache mode:              Off  | read policy:             ra
  cache mode:              Auto | read policy:             ra
  cache mode:              Auto | read policy:             none
  $ kt set -o vd -i 3 -p none -c auto -n tapes
  nothing to change
  $ kt set -o vd -i 3 -n tapes2 | tail -1
  name:                    tapes2
  $ for words in "on" "off -n home2"; do kt 1 set -o vd -i 3 --restore $words | head -2 | joined; done
  virtual disk id:         3 | restore:                 on
  virtual disk id:         3 | restore:                 off
  $ written
  KT_LD_SetConfig a=0 vd=3 4: 61 -> 74, 5: 72 -> 61, 6: 63 -> 70, 7: 68 -> 65, 8: 69 -> 73, 9: 76 -> 00, 10: 65 -> 00
  KT_LD_SetConfig a=0 vd=3 2: 01 -> 04
  KT_LD_SetConfig a=0 vd=3 2: 04 -> 05
  KT_LD_SetConfig a=0 vd=3 2: 05 -> 0c
  KT_LD_SetConfig a=0 vd=3 2: 0c -> 08
  KT_LD_SetConfig a=0 vd=3 9: 00 -> 32
  KT_LD_SetConfig a=1 vd=3 2: 00 -> 10
  KT_LD_SetConfig a=1 vd=3 2: 10 -> 00, 8: 00 -> 32

Disks and arrays.

  $ kt set -o pd -i 3 -c off --smart off --speed 3
  hard disk id:            3
  write cache:             off
  drive speed:             3 Gb/s
  SMART:                   off
  status:                  online
  $ kt info -o pd -i 3 | grep -e 'Write cache' -e SMART -e 'Current speed' | joined
  Write cache:         supported (off) | SMART:               supported (off) | Current speed:       3 Gb/s
  $ kt set -o hd -i 3 -c on --smart on --speed 1.5 --waiveconfirmation | sed -n 2,4p | joined
  write cache:             on | drive speed:             1.5 Gb/s | SMART:                   on
  $ (kt set -o array -i 2 -n store -c off; kt set -o array -i 2 -c on --waiveconfirmation | sed -n 2p) | joined
  array id:                2 | write cache:             off | name:                    store | write cache:             on
  $ written
  KT_PD_SetConfig a=0 pd=3 0: 01 -> 00, 1: 01 -> 00, 3: 03 -> 02
  KT_PD_SetConfig a=0 pd=3 0: 00 -> 01, 1: 00 -> 01, 3: 02 -> 01
  KT_DG_SetConfig a=0 dg=2 2: 01 -> 00, 4: 61 -> 73, 5: 72 -> 74, 6: 63 -> 6f, 7: 68 -> 72, 8: 69 -> 65, 9: 76 -> 00, 10: 65 -> 00
  KT_DG_SetConfig a=0 dg=2 2: 00 -> 01

An alarm that is silenced stays on. What a battery does already is not done again.

  $ kt set -o hba --mute --alarm off > /dev/null; kt set -o hba --mute | tail -1
  Alarm:                   off
  $ for word in get set; do kt 1 $word -o driver; done
  
  Linux CLI needn't support :get -o driver.
  
  Linux CLI needn't support :set -o driver.
  $ kt 0 get -o hba -i 1 | grep -e HBA -e Model; kt get -o HD | grep -c '^drive speed'
  HBA Index:               1
  Model:                   Tarn S4h
  13
  $ for power in charge charge stop stop; do kt set -o bbu --power $power | joined; done
  BBU status:              charging | BBU charge:              95 %
  nothing to change
  BBU status:              idle | BBU charge:              95 %
  nothing to change
  $ written
  KT_Adapter_SetConfig a=0 13: 01 -> 00
  KT_AdapterMute a=0 -> 0
  KT_AdapterMute a=0 -> 0
  KT_BBU_ChangePower a=0 action=1 -> 0
  KT_BBU_ChangePower a=0 action=0 -> 0

What can lose data is asked about: a cache that no battery keeps, a battery that caches need, a member. The end of input
declines.

  $ ask() { kt "$@" < /dev/null | grep -v '^Do you still want to change the settings? (y or n)$'; }
  $ kt set -o vd -i 0 -w wt > /dev/null; kt set -o vd -i 0 -w wb | sed -n 2p
  cache mode:              On
  $ ask set -o bbu --power discharge
  VD 0 (boot) goes on writing to its cache without a battery.
  VD 1 (scratch) goes on writing to its cache without a battery.
  $ echo y | kt set -o bbu --power discharge | tail -3
  Do you still want to change the settings? (y or n)
  BBU status:              discharging
  BBU charge:              95 %
  $ ask set -o vd -i 3 -c on
  No battery keeps what VD 3 has in its write cache: it will be lost when the power fails.
  $ kt set -o array -i 1 -c off > /dev/null; ask set -o array -i 1 -c on
  No battery keeps the write cache of the disks of array 1: what it holds will be lost when the power fails.
  $ kt set -o pd -i 0 -c off > /dev/null; echo maybe | kt set -o pd -i 0 -c on
  No battery keeps the write cache of PD 0: what it holds will be lost when the power fails.
  Do you still want to change the settings? (y or n)
  Please input y or n.
  $ for pd in 7 3; do ask set -o pd -i $pd --status offline; done
  PD 7 is a member.
  VD 0 (boot) loses its redundancy.
  VD 1 (scratch) loses its redundancy.
  PD 3 is a member.
  VD 3 (tapes2) loses part of its redundancy.
  $ written
  KT_LD_SetConfig a=0 vd=0 2: 00 -> 01
  KT_LD_SetConfig a=0 vd=0 2: 01 -> 00
  KT_BBU_ChangePower a=0 action=2 -> 0
  KT_DG_SetConfig a=0 dg=1 2: 01 -> 00
  KT_PD_SetConfig a=0 pd=0 0: 01 -> 00
  $ echo y | kt set -o pd -i 3 --status offline -c off | tail -4 | joined
  write cache:             off | drive speed:             1.5 Gb/s | SMART:                   on | status:                  offline
  $ kt info -o vd -i 3 | grep ^status; ask set -o pd -i 4 --status offline
  status:              partially optimal
  PD 4 is a member.
  VD 3 (tapes2) loses its redundancy.
  $ for word in offline "online -c on --waiveconfirmation" online; do kt set -o pd -i 3 --status $word | tail -1; done
  nothing to change
  status:                  online
  nothing to change
  $ written
  KT_PD_SetConfig a=0 pd=3 0: 01 -> 00
  KT_PD_SetHDStatus a=0 pd=3 status=0 -> 0
  KT_PD_SetHDStatus a=0 pd=3 status=1 -> 0
  KT_PD_SetConfig a=0 pd=3 0: 00 -> 01
  $ ktsim clock until idle > /dev/null; for pd in 8 3; do ask 1 set -o pd -i $pd --status offline; done | joined
  PD 8 is a member. | VD 2 (spool) goes offline. | PD 3 is a member. | VD 1 (media) loses its redundancy.

Everything has its effect: a matching spare was idle because the adapter does not rebuild by itself.

  $ lab troubled; (kt set -o hba --autorebuild on | grep Auto; kt info -o vd -i 0 | grep 'BGA prog') | joined
  Auto Rebuild:            on | BGA progress:    rebuilding is 0% done
