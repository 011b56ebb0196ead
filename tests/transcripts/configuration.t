An adapter's configuration is saved as text. A file is never overwritten.

  $ . "$TESTDIR/setup.sh"
  $ cfg() { ktcfg "$@" > .out 2> .err; local status=$?; sed 1d .out; sed 's/^/stderr: /' .err; return $status; }
  $ lab default; cfg backup_cfg; cp hba0_cfg.txt before
  Backup_cfg command is returned successfully!
  stderr: virtual disk 3: 7630767 M is written as 3436463 M.
  stderr: [WRITE POLICY] is the cache in force now; one that was auto comes back as on or off.
  stderr: Edit 'hba0_cfg.txt' before restoring it; a report (ktreport json) keeps all of this.

Edited by hand and read back, it changes what it names and nothing else.

  $ cat > change.txt <<EOF
  > [adapter config] # as an editor left it
  > [spinup group] = 4
  > [End]
  > [Port Config]
  > [PORT ID]=7
  > [AMP]=f   # the strongest
  > [END]
  > [RAID CONFIG]
  > [END]
  > EOF
  $ cfg restore_cfg -f change.txt
  KTCLI_RAID_CONFIG End
  Restore HBA and Port config is returned successfully!
  
  [1]
  $ cfg backup_cfg -f after > .said; diff -aU0 before after | grep '^[+-]\[' | joined
  -[SPINUP GROUP]=1 | +[SPINUP GROUP]=4 | -[AMP]=6 | +[AMP]=F

What restoring another adapter's file would do is said beforehand, by reading only.

  $ lab empty
  $ ktsetup create -o array -r 5 -d 0,1,2 -n demo > /dev/null && ktsetup create -o vd -a 0 -n data -s 500000 > /dev/null
  $ ktsetup assign -d 3 > /dev/null && ktcfg backup_cfg -f one > /dev/null 2>&1 && sed -i 's/=RAID5/=RAID1/; s/0,1,2/0,1/' one
  $ calls > /dev/null; cfg check -f one --raid
  The settings would stay as they are.
  Would be deleted:
    virtual disk 0 'data' (RAID5, 500000 M)
      disk 0, Gannet GT2000G, serial number AG00000000000
      disk 1, Gannet GT2000G, serial number AG00000019E37
      disk 2, Gannet GT2000G, serial number AG00000023C6E
    spare disk 3, which becomes free
  Would be created:
    virtual disk 'data' (RAID1, 500000 M) on disks 0, 1
    disk 3 as global spare disk
  In the way:
    virtual disk 0 'data': its disks are in array 0 'demo', which stays and has other disks or another level
  'one' cannot be restored here.
  [1]
  $ calls | grep -vE 'KT_(API|SIM)_|Get|HasOS|Flash_Bin a=0 action=240'
  [1]
  $ sed -i 's/=RAID1/=RAID5/; s/0,1/0,1,2/' one && cfg check -f one --raid | tail -1
  'one' can be restored here.
  $ cfg restore_cfg -f one --raid | grep successfully
  Restore HBA and Port config is returned successfully!
  Restore raid config is returned successfully!

A check says what a restore comes to, whichever file is given to which adapter.

  $ adapters='default:0 empty:1 full:8 troubled:1'
  $ for on in $adapters; do
  >   lab ${on%:*} && cp state.db state.$on
  >   ktcfg ${on#*:} backup_cfg -f of.$on > /dev/null 2>&1
  >   sed -i 's/^.RAID MODE.=$/[RAID MODE]=RAID0/' of.$on
  > done
  $ for on in $adapters; do
  >   for file in of.*; do
  >     rm -f state.db* && cp state.$on state.db
  >     ktcfg ${on#*:} check -f $file --raid > /dev/null && said=can || said=cannot
  >     ktcfg ${on#*:} restore_cfg -f $file --raid > .out 2> .err
  >     test $? = 1 && ! grep -q '^Fail\|error' .out && is=can || is=cannot
  >     test $said$is = cannotcannot || echo $on $file: $said, $is
  >   done
  > done | joined
  empty:1 of.empty:1: can, can | full:8 of.empty:1: can, can | full:8 of.full:8: can, can | troubled:1 of.empty:1: can, can
  $ rm -f state.db* && cp state.empty:1 state.db && ktcfg 1 check -f of.empty:1 --raid | grep delete
  Nothing would be deleted.

Whatever an adapter holds, it is either read back and written the same way, or said to be beyond the text's means: how
many losses are named, and what the reader stops at.

  $ for name in default empty full troubled hostile; do
  >   lab $name
  >   count=$(ktsetup adapter | sed -n 's/Total number of adapters: //p')
  >   for a in $([ $name = full ] && echo 0 8 || seq 0 $((count - 1))); do
  >     rm -f saved again
  >     cfg $a backup_cfg -f saved > .said
  >     cfg $a restore_cfg -f saved >> .said
  >     ktcfg $a backup_cfg -f again > /dev/null 2>&1
  >     cmp -s saved again && echo "$name $a: $(grep -c 'stderr: .*\(written\|lacks\)' .said)$(sed -n 's/Restore_Error: ./, &/p' .said)"
  >   done | joined
  > done
  default 0: 1 | default 1: 1, Restore_Error: invalid vd raid mode!
  empty 0: 0 | empty 1: 0 | empty 2: 0
  full 0: 41 | full 8: 32
  troubled 0: 4 | troubled 1: 10, Restore_Error: invalid vd raid mode!
  hostile 0: 2, Restore_Error: unknown HBA config option! | hostile 1: 5, Restore_Error: unknown HBA config option!
  $ lab troubled; cfg backup_cfg -f last | grep 'disk 3'
  stderr: [PD MEMBER] of virtual disk 3 lacks disks or names blocks in their place.
  stderr: virtual disk 3: [PD MEMBER] 7,-,- is written as 7.
  $ ktsim show | sed 's/"checking/"check#ing/' > odd; lab odd; cfg backup_cfg -f hash | grep '#'
  stderr: virtual disk 4: [RAID NAME] 'check#ing' is written as 'check'.

Words that are no command are refused before the library is asked.

  $ calls > /dev/null; for words in "" "254 plan" "255 plan" "1 back-up" "-output file"; do ktcfg $words > said 2>&1; done; calls
