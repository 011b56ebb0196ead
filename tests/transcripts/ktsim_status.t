What an administrator asks ktsim about the adapters.

  $ . "$TESTDIR/setup.sh"

What is wrong stands first, however much else there is, then what is going on; the rest is cut.

  $ lab full && ktsim disk fail 100 -a 15 -f && ktsetup 3 mp -d 2 > /dev/null
  $ ktsim status | sed -n '4,17p'
  
  Adapter 15  Tarn S16h (LD-based), no battery, last event 4
    128 disks, 32 virtual disks
    VD 25    VD_25            RAID6          7.3 TiB  partially optimal, write-back, unsafe (no battery)
    PD 100   Gannet GT4000G        SATA       3.6 TiB  PM 6:10     member of VD 25, FAILED
    VD 0     VD_0             RAID5         10.9 TiB  online, write-back, unsafe (no battery)
    PD 0     Gannet GT4000G        SATA       3.6 TiB  PM 0:0      member of VD 0
      ... 30 more virtual disks (--all shows them)
      ... 126 more disks (--all shows them)
  
  Adapter 3  Tarn R8i (array-based), battery 95%, last event 2002
    128 disks, 32 arrays, 64 virtual disks
    PD 2     Fulmar FX8000G-SAS    SAS        7.3 TiB  bay 1:2     member of array 0
            [--------------------] 0% media patrol, 1 d 2 h left
  $ ktsim status | sed -n 27p; ktsim status -a 15 | grep -c 'Adapter'
  Adapter 0   Tarn R8i     all well: 128 disks, 32 arrays, 64 virtual disks (-a 0 shows them)
  1
  $ ktsim status --all -a 15 | grep -c ' PD '; ktsim status -a 16
  128
  ktsim: there is no adapter 16, only 16 of them
  [1]
  $ for count in 3 4; do
  >   echo '{"adapters": [{"count": '$count', "disks": [{"count": 5}]}]}' > some.json
  >   ktsim create --lab some.json --force && ktsim status | grep -c ' PD '; done
  15
  0
  [1]

Of enclosures and batteries only what is wrong; where a disk went; whence and where a copy back goes.

  $ lab default && ktsim enclosure set 1 fan 2 failed && ktsim enclosure set 1 pow 0 ac-fail
  $ ktsim battery charge 10 && ktsim battery charger broken
  $ ktsim disk pull 2 -f && ktsim clock until idle && ktsim disk insert 2
  Idle after 3 h 38 min.
  $ ktsim status -a 0 | sed -n '6,10p; 13p'
    13 disks, 3 arrays, 4 virtual disks
    Battery  9%, 31.40 C, 3.60 V, charger broken, caches would not survive a power failure
    Enclosure 1  pow 0 critical  fan 2 critical
    Array 1  databases        RAID5          3.6 TiB  functional, 1.6 TiB free
            [--------------------] 0% copy back to disk 2 from disk 9, 3 h 38 min left
    VD 0     boot             RAID1        100.0 GiB  array 0  online, write-back, unsafe (battery 9%), runs the OS

A drive that tests itself is at work.

  $ echo '{"adapters": [{"disks": [{"type": "SATA SSD", "size": "480GB"}]}]}' > ssd.json; lab ssd.json
  $ kt ssd -a start -d 0 -t long; ktsim clock advance 5m; ktsim status | tail -2; ktsim clock until idle
  The long self-test of PD 0 is started.
    PD 0     Petrel PS480G SSD     SATA SSD 447.1 GiB  port 0      free
            [####----------------] 24% long self-test, 15 min 1 s left
  Idle after 15 min 1 s.

Why a disk is offline.

  $ cat > keys.json <<EOF
  > {"adapters": [{"type": "LD-based", "disks": [{"count": 2, "port": 1}],
  >   "keys": [{"id": 0, "key": "one", "password": "open", "ports": [{"id": 1, "enabled": true}]}],
  >   "virtualDisks": [{"level": "RAID1", "disks": [0, 1]}]}]}
  > EOF
  $ ktsim create --lab keys.json --force && ktsim status | sed '1,/virtual disk/d'
    VD 0     VD_0             RAID1        931.5 GiB  degraded, write-back, unsafe (no battery)
    PD 0     Gannet GT1000G        SATA     931.5 GiB  port 1      member of VD 0, offline (it is plain, its port encrypts)
    Port 1   key entry 0, encryption on
    PD 1     Gannet GT1000G        SATA     931.5 GiB  port 2      member of VD 0

Lists for people and for completion.

  $ ktsim event --list | sed -n '1p;$p'
   0   0  SMART has been enabled
  15  15  Adapter <device> become idle status
  $ ktsim event 12 2>&1
  ktsim: CODE is required (--help tells more)
  [2]
  $ ktsim --version
  ktsim * (glob)

Completion knows the adapters' disks and enclosures, calls, events and labs.

  $ lab default && ktsim disk pull 12 && ktsim disk pull 3 -f
  $ . "$TESTDIR/../../packaging/completion/ktsim.bash"; compopt() { :; }
  $ try() { COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _ktsim; echo "${COMPREPLY[*]}"; }
  $ (try ktsim disk fail 1; try ktsim disk fail 3 -a 1 ''; try ktsim disk insert '') | joined
  1 10 11 | 0 1 2 3 4 5 6 7 8 9 | 12 3
  $ (try ktsim disk age 3 w; try ktsim disk replace 3 --type S) | joined
  wear warmth | SATA SAS SATA\ SSD SAS\ SSD
  $ ktsim cable show -a 1 | joined; ktsim cable pull 6 -f; try ktsim cable pull ''; try ktsim cable insert ''; ktsim cable show | tail -1
  Port 0  disk 0 | Port 1  disk 1 | Port 2  port multiplier 1  disks 2 8 9 | Port 3  port multiplier 0  disks 3 4 5 6 7
  0 1 2 3
  6
  Port 6  pulled out
  $ ktsim enclosure pull 1 -f; ktsim status | grep -e 'Cable' -e 'Encl'; try ktsim enclosure insert ''; ktsim enclosure insert 1; ktsim cable insert 6
    Cable 6  pulled out
    Enclosure 1  pulled out
  1
  $ (try ktsim enclosure set ''; try ktsim enclosure set 1 d; try ktsim event 1; try ktsim event 10 2) | joined
  1 | dor dpl | 1 10 12 13 15 | 20 21 22 23 24 25
  $ try ktsim fault KT_BBU; try ktsim create --lab ''; try ktsim disk fail --f
  KT_BBU_ChangePower KT_BBU_GetInfo
  default empty full hostile none troubled
  --force
