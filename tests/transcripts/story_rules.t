What adapters do when things cross each other.

  $ . "$TESTDIR/setup.sh"
  $ cat > twelve.json <<EOF
  > {"adapters": [{"type": "array-based", "battery": true, "enclosures": [{}], "disks": [{"count": 12, "type": "SATA", "size": "500GB"}]}]}
  > EOF
  $ fresh() { ktsim create --lab twelve.json --at "2026-01-05 08:00:00" --force; }
  $ make() { kt create -o array -r $1 -d $2 | grep -v success; kt create -o vd -a 0 -s 100000 | grep -v success
  >          ktsim clock until idle > /dev/null; }

What a virtual disk is migrated to does as its own members do.

  $ fresh; make 5 0,1,2; kt migrate -l 0 -d 0,1,2,3
  Start migrate successfully
  $ ktsim disk fail 1 -f; kt info -o vd -i 0 | grep -e status -e Status | joined
  status:              degraded | BGA status:          running | status:              degraded | BGA status:          N/A

An aborted check can be restarted, but keeps nobody from anything else.

  $ fresh; make 5 0,1,2; kt cc -l 0; kt cc -l 0 -a stop; ktsim status | grep abort
  Start consistency check
  Abort successfully
            [--------------------] 0% check and fix, aborted
  $ kt cc -l 0 -a restart > /dev/null && kt cc -l 0 -a stop > /dev/null
  $ kt migrate -l 0 -d 0,1,2,3; ktsim status | grep '[0-9]% '
  Start migrate successfully
            [--------------------] 0% migration to RAID5 of 4 disks, 20 min 50 s left

The disk that left first has missed what was written since, whatever the clock says; the one that left last has not.

  $ fresh; make 5 0,1,2; ktsim disk pull 1 -f; ktsim disk pull 2 -f; ktsim disk insert 1; kt info -o vd -i 0 | grep ^status
  status:              offline

It may be the last copy all the same: it stays known until it is wiped, or its virtual disk is gone or works without it.

  $ ktsim status | grep 'PD 1 '; kt create -o array -r 0 -d 1,3
    PD 1     Gannet GT500G         SATA     465.8 GiB  bay 0:1     foreign, has missed what was written to VD 0
  Foreign disk 1 can not be used to create array.
  [1]
  $ kt wipe -d 1 > /dev/null; ktsim disk insert 2; ktsim status | grep 'VD 0\|PD [12] '
    VD 0     VD_R5_1          RAID5         97.7 GiB  array 0  degraded, write-back
    PD 1     Gannet GT500G         SATA     465.8 GiB  bay 0:1     member of array 0
    PD 2     Gannet GT500G         SATA     465.8 GiB  bay 0:2     member of array 0
  $ ktsim clock until idle > /dev/null; kt info -o vd -i 0 | grep ^status
  status:              online

Disks that leave together come back together.

  $ fresh; make 5 0,1,2; ktsim disk pull 1 2 -f; kt info -o vd -i 0 | grep ^status; ktsim disk insert 1 2; kt info -o vd -i 0 | grep ^status
  status:              offline
  status:              online
  $ ktsim disk fail 3 99 -f; ktsim disk pull 3 99; ktsim status | grep 'PD 3 '
  ktsim: there is no disk 99 that works
  ktsim: there is no disk 99
    PD 3     Gannet GT500G         SATA     465.8 GiB  bay 0:3     free
  $ lab default; ktsim enclosure pull 1 < /dev/null
  Disks 0, 1, 2, 3, 4, 5, 6, 7, 8 hold parts of virtual disks. Go on? [y/N] ktsim: nothing was changed
  
  [1]
  $ ktsim enclosure pull 1 -f; ktsim status -a 0 | grep -e 'PD 7 ' -e Encl -e 'VD 3.*offline'; kt enc -o enc; kt info -o exp
    Enclosure 1  pulled out
    VD 3     archive          RAID6          7.3 TiB  array 2  offline
    PD 7     Petrel PX800G SAS SSD SAS SSD  745.2 GiB  bay 1:7     was a member of VD 0 1, pulled out
  
  No enclosure is found
  No expander is found.
  $ ktsim disk pull 12; ktsim enclosure insert 1; ktsim enclosure insert 1
  ktsim: there is no pulled enclosure 1
  [1]
  $ ktsim status -a 0 | grep -e 'PD 12' -e 'VD 3.*online'; kt info -o exp | grep Enclosure
    VD 3     archive          RAID6          7.3 TiB  array 2  online, write-through
    PD 12    Gannet GT1000G        SATA     931.5 GiB  port 7      pulled out
  Enclosure ID:        1

What belongs to others is not wiped in passing.

  $ lab troubled; ktsim status -a 1 | grep 'PD 10 '; ktsetup 1 wipe -d 9 | tail -1; ktsetup 1 wipe -d 9 -f | tail -1
    PD 10    Gannet GT1000G        SATA     931.5 GiB  PM 0:8      foreign of VD 3 4 5
  Wipe MDD on PD 9 failed (error 56: Specified physical disk is assigned to a virtual disk).
  Wipe PD 9 is returned successfully.

A disk that is broken elsewhere is broken here.

  $ fresh; ktsim disk fail 0 -f; cp state.db other.db; fresh; ktsim disk insert 0 1 --from other.db > /dev/null
  $ ktsim status | grep 'PD 1[23] '
    PD 12    Gannet GT500G         SATA     465.8 GiB  bay 0:12    not in use, FAILED
    PD 13    Gannet GT500G         SATA     465.8 GiB  bay 0:13    free
