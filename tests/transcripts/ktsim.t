The command of the simulated adapters.

  $ . "$TESTDIR/setup.sh"
  $ export KTRAID_SIM=state.db
  $ no() { ktsim "$@" < /dev/null; test $? = 1 || echo "it is not refused"; }

A state is made once; over an existing one only when that is wanted.

  $ ktsim create --list | paste -sd' '; ktsim create --lab default --at "2026-01-05 08:00:00"; stat -c %a state.db
  default empty full hostile none troubled
  600
  $ no create --lab none
  Everything in state.db will be lost. Go on? [y/N] ktsim: nothing was changed
  
  $ ktsim status | sed -n 2,8p
  Clock   2026-01-05 08:00:00 UTC, stopped
  Faults  none
  
  Adapter 1  Tarn S4h (LD-based), no battery, last event 1
    10 disks, 4 virtual disks
    VD 1     media            RAID5          1.0 TiB  degraded, write-back, unsafe (no battery)
            [#######-------------] 37% rebuild of disk 5 from disks 3 4, 1 h 8 min left
  $ no create --lab nothere
  ktsim: nothere is neither a file nor one of the labs: default empty full hostile none troubled
  $ echo '{"adapters": [{"disks": [{"sector": 513}]}]}' > wrong.json
  $ no create --lab wrong.json --force; no create --lab empty --at yesterday
  ktsim: lab wrong.json: adapters[0].disks[0].sector: should be 512, 1024, 2048 or 4096
  ktsim: "yesterday" is not a time such as "2026-01-05 08:00:00"
  $ printf 'not a state' > other.db; no --state other.db status; no --state other.db create --force; cat other.db; echo
  ktsim: other.db: this is not a state of the simulated adapters
  ktsim: other.db: this is not a state of the simulated adapters; it stays as it is
  not a state
  $ ln -s nowhere link.db; mkfifo pipe.db; mknod null.db c 1 3 2> /dev/null || mkfifo null.db
  $ for place in link pipe null; do no --state $place.db create --force; done
  ktsim: link.db: this link leads nowhere
  ktsim: pipe.db: this is not a file
  ktsim: null.db: this is not a file
  $ ktsim --state other2.db create && ln -s other2.db link2.db; ktsim --state link2.db clock show | sed 's/.*UTC//'
  , running in real time
  $ head -c 5000 other2.db > cut.db && mv cut.db other2.db && ktsim --state link2.db create --force
  $ test -L link2.db && ktsim --state other2.db clock stop

What show prints, create reads back; a lab comes through a pipe too.

  $ lab troubled
  $ ktsim event 2 11 --device 12 --severity 6 -p 1 2 3 4 --sense 7905fFAa -a 1
  $ ktsim fault KT_LD_Delete 61 --after 1 --times 3
  $ ktsim show > first.json; grep -o '"7905[^"]\{5\}' first.json
  "7905ffaa0
  $ ktsim create --lab - --force < first.json
  $ ktsim show | cmp - first.json; ktsim create --lab - --force <&-
  ktsim: standard input: cannot be read
  [1]
  $ ktreport json > report.json; TMPDIR=$PWD/nowhere ktsim create --lab report.json --force 2>&1 | sed "s|$PWD||"
  ktsim: /nowhere/ktsim-XXXXXX: No such file or directory
  $ for hex in 7 $(printf '%062d' 0) 7g g7 7G 7/ 7: 7@ '7`'; do ktsim event 2 11 --sense $hex; done 2>&1 | uniq -c
        2 ktsim: --sense takes at most 30 bytes in hexadecimal
        7 ktsim: --sense takes bytes in hexadecimal

What a lab brings along halfway was announced before.

  $ kt event | grep -c 'done'
  0
  [1]

The clock.

  $ lab empty; ktsim clock advance 1w1d2h30m1s && ktsim clock show
  2026-01-13 10:30:01 UTC, stopped
  $ no clock advance 1y; no clock advance 5; no clock advance 36600d; no clock advance 36600d1s
  ktsim: "1y" is not a duration such as 90m, 2h30m or 3d
  ktsim: "5" is not a duration such as 90m, 2h30m or 3d
  ktsim: the adapters' clock ends at 2106-02-07 06:28:15 UTC
  ktsim: "36600d1s" is not a duration such as 90m, 2h30m or 3d
  $ for at in "1970-01-01 00:00:01" "2106-02-07 06:28:15" "2026-02-28 23:59:59"; do ktsim clock set "$at"; done
  $ ktsim clock advance 1s && ktsim clock show
  2026-03-01 00:00:00 UTC, stopped
  $ no clock set "1970-01-01 00:00:00"; no clock set "2106-02-07 06:28:16" 2> /dev/null
  ktsim: the adapters' clock begins at 1970-01-01 00:00:01 UTC and ends at 2106-02-07 06:28:15 UTC
  $ for words in "speed 60" start; do ktsim clock $words && ktsim clock show | sed 's/.*UTC//'; done | uniq -c
        2 , running 60 times as fast as real time
  $ ktsim clock stop && ktsim clock until idle
  Idle after 0 s.

Setting it moves dates only: no work is done or lost, nothing planned falls due.

  $ lab default && ktsim disk fail 0 --force && ktsim clock advance 1h
  $ for day in 2027-01-01 2026-01-01; do ktsim clock set "$day 08:00:00" && ktsim status -a 0 | grep '27%\|last event'; done | sort | uniq -c
        2           [#####---------------] 27% rebuild of disk 9 from disks 1 2, 2 h 38 min left
        2 Adapter 0  Tarn R8i (array-based), battery 95%, last event 7
  $ ktsim clock until idle && kt event | grep -m1 Time
  Idle after 2 h 38 min.
  Time:         Thu Jan  1 10:38:27 2026
  $ ktsim show > first.json && ktsim create --lab - --force < first.json && ktsim show | cmp - first.json

Faults.

  $ lab default
  $ for words in "GetHDInfo 9 --times 1" "GetConfig --kind count -a 1" "GetBGAStatus 58 --after 2"; do ktsim fault KT_PD_$words; done
  $ ktsim fault list
  KT_PD_GetHDInfo answers 9, once
  KT_PD_GetConfig spoils its count on adapter 1
  KT_PD_GetBGAStatus answers 58, after 2 more calls that go well
  $ kt info -o pd -i 0 > /dev/null
  [9]
  $ ktsim fault list | grep -c PD_G; ktsim fault clear && ktsim fault list
  2
  $ ktsim event 9 16 -n 60 && ktsim fault KT_EVT_GetEvent 0 --kind count && kt event | grep -c Seq && ktsim fault clear
  50
  $ no fault KT_LD_GetInfos 5; no fault KT_SIM_SgVersion 5
  ktsim: KT_LD_GetInfos is not a call of the library
  ktsim: KT_SIM_SgVersion is not a call of the library
  $ for c in "KT_LD_Delete --kind text" "KT_EVT_GetEvent --kind next" "KT_BBU_GetInfo --kind count"; do no fault $c; done
  ktsim: KT_LD_Delete answers nothing that --kind text could spoil
  ktsim: KT_EVT_GetEvent answers nothing that --kind next could spoil
  ktsim: KT_BBU_GetInfo answers nothing that --kind count could spoil

Batteries and images.

  $ ktsim battery show
  Charge       idle, 95%
  Capacity     6.20 of 6.50 Wh, 17 cycles
  Temperature  31.40 C (0 to 60 C)
  Voltage      4.12 V (3.30 to 4.30 V)
  VD caches    survive a power failure
  $ echo | ktsim battery remove
  Caches of virtual disks will not survive a power failure. Take the battery out? [y/N] ktsim: nothing was changed
  
  [1]
  $ ktsim battery remove --force && ktsim battery show
  Adapter 0 has no battery.
  $ ktsim battery insert && ktsim battery charge 10 && ktsim battery show | head -1
  Charge       charging, 10%
  $ no battery show -a 2
  ktsim: there is no adapter 2, only 2 of them
  $ ktsim image make new.img --type bios --version 9.8.7.6 && wc -c < new.img
  131136
  $ no image make new.img
  ktsim: new.img: File exists
  $ for v in 1.2.3 1.2.3.4. 1.2.3.4.5 1.+2.3.4 65536.1.1.1 1.1.1.65536; do ktsim image make bad.img --version $v; done 2>&1 |
  >   grep -c 'not a version'
  6
  $ ktsim image make most.img --version 65535.65535.65535.65535

Disks; what follows is the adapter's business.

  $ lab default
  $ no disk fail 1
  Disk 1 holds parts of virtual disks. Go on? [y/N] ktsim: nothing was changed
  
  $ ktsim disk fail 1 --force && ktsim status | grep -A1 'Array 1  \|VD 2  .*array'
    VD 2     orders           RAID5          2.0 TiB  array 1  degraded, write-back (auto: battery 95%)
    PD 1     Fulmar FX2000G-SAS    SAS        1.8 TiB  bay 1:1     not in use, FAILED
    Array 1  databases        RAID5          3.6 TiB  functional, 1.6 TiB free
            [--------------------] 0% rebuild of disk 9 from disks 0 2, 3 h 38 min left
  $ no disk fail 1 --force; no disk insert 1
  ktsim: there is no disk 1 that works
  ktsim: there is no disk 1 that was pulled
  $ ktsim disk pull 12 && ktsim status | grep 'PD 12 ' && ktsim disk insert 12
    PD 12    Gannet GT1000G        SATA     931.5 GiB  port 7      pulled out

Disks of another lab bring their arrays, with their names and spares; they get ids of their own. It does not matter
whether they were pulled there; what missed writing has nothing to bring.

  $ no disk insert 13 --from default; no disk insert 1 --from default --of 2
  ktsim: adapter 0 of default does not have all of these disks
  ktsim: default has no adapter 2
  $ export KTRAID_SIM="$PWD/there.db"; lab default; ktsim disk pull 9 0 -f; ktsim disk pull 1 2 -f
  $ export KTRAID_SIM="$PWD/arrays.db"; lab empty
  $ ktsim disk insert 9 0 1 2 --from there.db | tail -1 && kt info -o vd -i 0 | grep -e '^status' -e '^PD RAID'
  Disk 2 of there.db is disk 11 here.
  status:              importable foreign
  PD RAID setup:       * 10 11 
  $ kt import -i 0 && kt info -o array -i 0 | grep -e '^Name' -e '^Spare'; export KTRAID_SIM="$PWD/state.db"
  Name:                databases
  Spare PD IDs:        8
  $ for size in 0.9GB 100001TB 4XB 1GB 100000TB 1TB; do ktsim disk replace 12 --size $size && ktsim status | grep -o "PD 12 .*B "; done
  ktsim: "0.9GB" is not a size such as 500GB or 4TB
  ktsim: "100001TB" is not a size such as 500GB or 4TB
  ktsim: "4XB" is not a size such as 500GB or 4TB
  PD 12    Gannet GT1G           SATA     953.5 MiB 
  PD 12    Gannet GT999999G      SATA      88.8 PiB 
  PD 12    Gannet GT1000G        SATA     931.5 GiB 
  $ for n in 41 40; do ktsim disk replace 12 --model "$(printf "%0${n}d" 0)" 2>&1 | cut -c 1-30; done; kt info -o pd -i 12 | grep model
  ktsim: --model: is longer than
  model:               0000000000000000000000000000000000000000
  $ ktsim disk replace 1 --force && ktsim disk trip 11 && ktsim status | grep 'PD 11'
    PD 11    Petrel PS480G SSD     SATA SSD 447.1 GiB  port 6      free, failing

What is wrong on a disk shows where a person looks for it, and when something reads there.

  $ ktsim disk damage 3 --lba 64 --count 2 --force && ktsim disk corrupt 3 --force --count 3 && ktsim disk damage 12
  Disk 3: 2 sectors cannot be read (the first: LBA 0x40).
  Disk 3: 3 sectors hold wrong data (the first: LBA 0x13526b580).
  Disk 12: 1 sector cannot be read (LBA 0x78cce0d).
  $ ktsim disk damage 12 --lba 1953525166 --count 2; no disk damage 12 --lba 1953525168; no disk damage 12 --lba 1953525166 --count 3
  Disk 12: 2 sectors cannot be read (the first: LBA 0x74706dae).
  ktsim: disk 12 has only 1953525168 sectors
  ktsim: disk 12 has only 1953525168 sectors
  $ no disk damage 3 --lba 64 --force; no disk corrupt 12 --lba 0x10 --force; no disk corrupt 8 --lba 0x10 -a 1 --force
  ktsim: disk 3 has these bad sectors already
  ktsim: no redundant virtual disk has LBA 16 of disk 12
  ktsim: no redundant virtual disk has LBA 16 of disk 8
  $ no disk age 3 wear 20; no disk age 0 reallocated 5; no disk age 11 spin-retries; no disk age 99 wear
  ktsim: disk 3 is no SSD: it has no wear
  ktsim: disk 0 keeps no SMART attributes
  ktsim: disk 11 is an SSD: it has no spin-retries
  ktsim: there is no disk 99
  $ ktsim status | grep 'PD 3 .*bad'
    PD 3     Gannet GT4000G        SATA       3.6 TiB  bay 1:3     member of array 2, 2 bad sectors, wrong data in 3 sectors

Elements of enclosures.

  $ ktsim enclosure show
  Enclosure 1  TARNWARE Shelf 24: OK
    arydev  0-10 ok, 11-23 not installed
    pow     0-1 ok
    fan     0-3 ok
    tpr     0-2 ok
    dor     0 ok
    alm     0 ok
    dpl     0 ok
    vlt     0-1 ok
  $ no enclosure set 1 fan 0 soup
  ktsim: enclosure 1, fan 0: it is never "soup" but only: ok failed off missing unknown
  $ no enclosure set 1 fan 4 ok; no enclosure set 2 fan 0 ok; no enclosure set 1 arydev 0 failed; no enclosure reading 1 dor 0 20
  ktsim: enclosure 1, fan 4: there is none
  ktsim: there is no enclosure 2
  ktsim: enclosure 1, arydev 0: slots follow their disks
  ktsim: enclosure 1, dor 0: it measures nothing

A command in the state's environment; its result is the command's own.

  $ ktsim --state elsewhere.db run -- sh -c 'basename "$KTRAID_SIM"; basename "${LD_LIBRARY_PATH%%:*}"; exit 7'
  elsewhere.db
  ktraid-sim
  [7]
  $ ktsim run -- echo a -- b; ktsim run echo a; printf 'ver\nexit\n' | ktsim run -- ktsetup | grep -c Invalid; ktsim run echo -n a
  a -- b
  a
  0
  ktsim: The following argument was not expected: -n (--help tells more)
  [2]
  $ for words in "-- ./nothing" "-- ." ""; do ktsim run $words; echo "= $?"; done 2>&1 | paste -d' ' - -
  ktsim: ./nothing: No such file or directory = 127
  ktsim: .: Permission denied = 126
  ktsim: COMMAND is required (--help tells more) = 2

What a state says is trusted no further than it reaches, and `check` names it.

  $ lab default && ktsim check
  The state is sound.
  $ ktsim show > sound && sed 's/"VDSlotCount": *[0-9]*/"VDSlotCount": 255/; s/"memberCount": *[0-9]*/"memberCount": 200/' sound > lab.json
  $ lab ./lab.json && ktsim check | sed 's/array [0-2] /array # /' | sort | uniq -c && kt info -o array -i 0 | grep -c slot
  ktsim: the state contradicts itself
        3 adapter 0: array # VDSlotCount is beyond what its record holds
        3 adapter 0: state of array # memberCount is beyond what its record holds
  4
  $ kt create -o vd -a 0 -s 1000 > /dev/null; kt delete -o vd -i 1 --waiveconfirmation && ktsim clock advance 1h
  Delete VD 1 successfully.
  $ printf '[%.0s' {1..50000} > deep.json; echo '{"adapters": [{"count": 255, "disks": [{"count": 65000}]}]}' > wide.json
  $ for lab in deep wide; do no create --lab ./$lab.json --force; done
  ktsim: lab ./deep.json: is nested deeper than 64 levels
  ktsim: lab ./wide.json: adapters: there are 16575000 disks in all, more than 262144
  $ kt flash -a update -t bios -f "$(printf '*/%.0s' {1..5000})" | cut -c 1-40
  Unable to open file '*/*/*/*/*/*/*/*/*/*

A state that is damaged anywhere but in its head can be replaced, and nothing else can.

  $ lab default && cp state.db whole && size=$(stat -c %s whole)
  $ for i in {1..40}; do
  >   rm -f state.db-*; cp whole state.db
  >   for at in $((i * 7919)) $((i * 104729)) $((i * 15485863)); do
  >     printf 'damage%.0s' {1..99} | dd of=state.db bs=1 seek=$((100 + at % (size - 800))) conv=notrunc 2> /dev/null; done
  >   [ $((i % 4)) -ne 0 ] || truncate -s $((size * i / 41)) state.db
  >   ktsim create --lab default --force 2> told || cat told; ktsim check; done | uniq -c
       40 The state is sound.

Output that is lost is told, with its reason, and never ends up in the state.

  $ for words in show status --help-all "create --list"; do
  >   ktsim $words > /dev/full; echo $?; ktsim $words >&-; echo $?; done 2>&1 | sort | uniq -c
        8 1
        4 ktsim: cannot write the output: Bad file descriptor
        4 ktsim: cannot write the output: No space left on device
  $ ktsetup error -c 300 >&-; ktsim check > /dev/null
  ktsetup: cannot write the output: Bad file descriptor

The help names numbers and words with their ranges and defaults.

  $ ktsim --help-all | awk '/^[a-z]/ { print line; line = $0 ":" }
  >   /^    [-A-Z]/ { sub(/^ +/, ""); sub(/   .*/, ""); sub(/UINT:UINT/, "UINT"); line = line "  " $0 }
  >   END { print line }' | sed 's/  -a,--adapter UINT=0/  -a/; s/  -f,--force/  -f/' | grep 'UINT\|INT in\|FLOAT\|TEXT:'
  status:  --all  -a,--adapter INT:INT in [0 - 254]
  disk fail:  ID UINT in [0 - 65534] ... REQUIRED  -a  -f
  disk pull:  ID UINT in [0 - 65534] ... REQUIRED  -a  -f
  disk insert:  ID UINT in [0 - 65534] ... REQUIRED  --from TEXT  --of UINT=0 Needs: --from  -a
  disk replace:  ID UINT in [0 - 65534] REQUIRED  --size TEXT  --type TEXT:{SATA,SAS,SATA SSD,SAS SSD,PATA,ATAPI}  --sector UINT:{512,1024,2048,4096}  --model TEXT  -a  -f
  disk age:  ID UINT in [0 - 65534] REQUIRED  WHAT TEXT:{reallocated,pending,uncorrectable,read-errors,spin-retries,link-errors,hours,wear,warmth} REQUIRED  AMOUNT UINT=1  -a
  disk damage:  ID UINT in [0 - 65534] REQUIRED  -a  -f  --lba UINT in [0 - 281474976710655]  --count UINT in [1 - 1000]=1
  disk corrupt:  ID UINT in [0 - 65534] REQUIRED  -a  -f  --lba UINT in [0 - 281474976710655]  --count UINT in [1 - 1000]=1
  disk trip:  ID UINT in [0 - 65534] REQUIRED  -a  --clear
  battery charge:  PERCENT FLOAT:0 to 100 REQUIRED  -a
  battery temperature:  CELSIUS FLOAT:-100 to 200 REQUIRED  -a
  battery voltage:  VOLTS FLOAT:0 to 60 REQUIRED  -a
  battery charger:  STATE TEXT:{broken,working} REQUIRED  -a
  enclosure set:  ENCLOSURE UINT in [0 - 65534] REQUIRED  ELEMENT TEXT:{dev,arydev,pow,fan,tpr,dor,alm,dpl,vlt} REQUIRED  NUMBER UINT in [0 - 254] REQUIRED  CONDITION TEXT REQUIRED  -a
  enclosure reading:  ENCLOSURE UINT in [0 - 65534] REQUIRED  ELEMENT TEXT:{dev,arydev,pow,fan,tpr,dor,alm,dpl,vlt} REQUIRED  NUMBER UINT in [0 - 254] REQUIRED  VALUE INT REQUIRED  -a
  enclosure pull:  ENCLOSURE UINT in [0 - 65534] REQUIRED  -a  -f
  enclosure insert:  ENCLOSURE UINT in [0 - 65534] REQUIRED  -a
  cable pull:  PORT UINT in [0 - 254] REQUIRED  -a  -f
  cable insert:  PORT UINT in [0 - 254] REQUIRED  -a
  clock speed:  X FLOAT:0.001 to 1000000 REQUIRED
  fault:  CALL TEXT  STATUS UINT in [0 - 255]  --after UINT=0  --times UINT=0  -a,--adapter INT:INT in [0 - 254]  --kind TEXT:{status,count,text,next}=status  --list-calls
  event:  CLASS UINT in [0 - 65535] Excludes: --list  CODE UINT in [0 - 65535] Excludes: --list  -d,--device UINT in [0 - 65535]=0  -s,--severity UINT in [0 - 7]=2  -p,--param UINT  --sense TEXT  -n,--count UINT in [1 - 1000000]=1  -a  --list Excludes: CLASS CODE Print the classes, codes and texts that there are
  image make:  FILE TEXT REQUIRED  -t,--type TEXT:{bios,firmware,autoload,bin,raw}=firmware  -v,--version TEXT=1.0.0.1  --vendor UINT in [0 - 65535]=8100  --size UINT in [0 - 65536]  --damage TEXT:{none,header,data,cut}=none
  image microcode:  FILE TEXT REQUIRED  -m,--model TEXT REQUIRED  -v,--version TEXT REQUIRED  Its version  --size UINT in [1 - 65536]=512  --damage TEXT:{none,header,data,cut}=none
  image damage:  -t,--type TEXT:{bios,firmware,autoload,bin}=firmware  --part TEXT:{header,data,both}=data  -a

What is not understood ends in 2.

  $ for words in "battery charge 101" "battery charge 1x" "clock speed 0" "cable pull 255" "disk replace 1 --sector 513" fault
  > do ktsim $words || [ $? = 2 ] || echo 'not 2'; done 2>&1 | sed 's/^ktsim: //; s/ (--help.*//; s/Value //'
  PERCENT: 101 is not a number from 0 to 100
  PERCENT: 1x is not a number from 0 to 100
  X: 0 is not a number from 0.001 to 1000000
  PORT: 255 not in range 0 to 254
  --sector: 513 not in {512,1024,2048,4096}
  CALL is required
  $ for words in "" soup; do ktsim $words > /dev/null 2>&1; echo $?; done | uniq -c
        2 2
