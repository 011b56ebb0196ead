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

Batteries and images.

  $ echo | ktsim battery remove
  Caches of virtual disks will not survive a power failure. Take the battery out? [y/N] ktsim: nothing was changed
  
  [1]
  $ ktsim image make new.img --type bios --version 9.8.7.6 && wc -c < new.img
  131136
  $ no image make new.img
  ktsim: new.img: File exists
  $ (ulimit -f 100; no image make other.img); ls *.img
  ktsim: other.img: File too large
  new.img

Disks; what follows is the adapter's business.

  $ lab default
  $ no disk fail 1
  Disk 1 holds parts of virtual disks. Go on? [y/N] ktsim: nothing was changed
  
  $ ktsim disk fail 1 --force && ktsim status | grep -A1 'Array 1  \|VD 2  .*array'
    VD 2     orders           RAID5          2.0 TiB  array 1  degraded, write-back (auto: battery 95%)
    PD 1     Fulmar FX2000G-SAS    SAS        1.8 TiB  bay 1:1     not in use, FAILED
    Array 1  databases        RAID5          3.6 TiB  functional, 1.6 TiB free
            [--------------------] 0% rebuild of disk 9 from disks 0 2, 3 h 38 min left
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
  $ for words in "1 --force --model Auk" "1 --force" "11 --sector 4096"; do ktsim disk replace $words; done
  $ ktsim disk trip 11 && ktsim status | grep -e 'PD 11' -e 'PD 1 .*Auk' && ktreport json | grep -o '"sector":4096'
    PD 11    Petrel PS480G SSD     SATA SSD 447.1 GiB  port 6      free, failing
    PD 1     Auk                   SAS        1.8 TiB  bay 1:1     free
  "sector":4096

What is wrong on a disk shows where a person looks for it, and when something reads there.

  $ ktsim disk damage 3 --lba 64 --count 2 --force && ktsim disk corrupt 3 --force --count 3 && ktsim disk damage 12
  Disk 3: 2 sectors cannot be read (the first: LBA 0x40).
  Disk 3: 3 sectors hold wrong data (the first: LBA 0x13526b580).
  Disk 12: 1 sector cannot be read (LBA 0x2d393ca7).
  $ ktsim status | grep 'PD 3 .*bad'
    PD 3     Gannet GT4000G        SATA       3.6 TiB  bay 1:3     member of array 2, 2 bad sectors, wrong data in 3 sectors

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

What is not understood ends in 2.

  $ for words in "" soup; do ktsim $words > /dev/null 2>&1; echo $?; done | uniq -c
        2 2
