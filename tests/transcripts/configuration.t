An adapter's configuration is saved as text. A file is never overwritten.

  $ . "$TESTDIR/setup.sh"
  $ cfg() { ktcfg "$@" > .out 2> .err; local status=$?; sed 1d .out; sed 's/disks\( [0-9]*\)\{9,\};/disks ...;/; s/^/stderr: /' .err; return $status; }
  $ lab default
  $ cfg backup_cfg
  Backup_cfg command is returned successfully!
  stderr: hba0_cfg.txt holds another name, size or number of disks for virtual disks 3; edit it before restoring.
  $ cp hba0_cfg.txt before
  $ cfg backup_cfg
  There is the same file 'hba0_cfg.txt', please rename this file!!
  [1]
  $ cmp hba0_cfg.txt before
  $ cfg backup_cfg -t PHY -f '"only phy.txt"'
  Backup_cfg command is returned successfully!

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
  $ ktcfg backup_cfg -f after > .out
  after holds another name, size or number of disks for virtual disks 3; edit it before restoring.
  $ diff -aU0 before after | grep '^[+-]\['
  -[SPINUP GROUP]=1
  +[SPINUP GROUP]=4
  -[AMP]=6
  +[AMP]=F
  $ cfg restore_cfg -t phy -f 'only phy.txt'
  Restore HBA and Port config is returned successfully!
  
  [1]

A saved adapter comes back whole: virtual disks and spares are deleted and created again, in that order.

  $ lab full
  $ cfg 8 backup_cfg -f saved
  Backup_cfg command is returned successfully!
  stderr: saved holds another name, size or number of disks for virtual disks ...; edit it before restoring.
  $ cfg 8 restore_cfg -f saved --raid | sed '/ing virtual disk/{/VD_3\>/!d}'
  KTCLI_RAID_CONFIG End
  Restore HBA and Port config is returned successfully!
  
  Restore raid config is returned successfully!
  stderr: Deleting virtual disk 3 'VD_3' (RAID5).
  stderr: Creating virtual disk 'VD_3' (RAID5, 3057543 M) on disks 12, 13, 14, 15.
  $ cfg 8 backup_cfg -f again
  Backup_cfg command is returned successfully!
  $ cmp saved again

Whatever an adapter holds, it is either read back and written the same way, or said to be beyond the text's means.

  $ for name in default empty full troubled hostile; do
  >   lab $name
  >   count=$(ktsetup adapter | sed -n 's/Total number of adapters: //p')
  >   for a in $([ $name = full ] && echo 0 8 || seq 0 $((count - 1))); do
  >     rm -f saved again
  >     cfg $a backup_cfg -f saved > .said
  >     cfg $a restore_cfg -f saved >> .said
  >     ktcfg $a backup_cfg -f again > /dev/null 2>&1
  >     cmp -s saved again && echo "$name $a: $(sed -n '/stderr/s/stderr: //p; /Restore_Error: ./p' .said)"
  >   done
  > done
  default 0: saved holds another name, size or number of disks for virtual disks 3; edit it before restoring.
  default 1: saved holds values that restore_cfg does not take; edit it before restoring.
  Restore_Error: invalid vd raid mode!
  empty 0: 
  empty 1: 
  empty 2: 
  full 0: [PD MEMBER] of virtual disk 63 lacks disks or names blocks in their place.
  saved holds another name, size or number of disks for virtual disks ...; edit it before restoring.
  full 8: saved holds another name, size or number of disks for virtual disks ...; edit it before restoring.
  troubled 0: [PD MEMBER] of virtual disk 0 lacks disks or names blocks in their place.
  [PD MEMBER] of virtual disk 3 lacks disks or names blocks in their place.
  saved holds another name, size or number of disks for virtual disks 0 3; edit it before restoring.
  troubled 1: [PD MEMBER] of virtual disk 0 lacks disks or names blocks in their place.
  [PD MEMBER] of virtual disk 5 lacks disks or names blocks in their place.
  [PD MEMBER] of virtual disk 6 lacks disks or names blocks in their place.
  [PD MEMBER] of virtual disk 7 lacks disks or names blocks in their place.
  saved holds values that restore_cfg does not take; edit it before restoring.
  Restore_Error: invalid vd raid mode!
  hostile 0: saved holds values that restore_cfg does not take; edit it before restoring.
  Restore_Error: unknown HBA config option!
  hostile 1: saved holds values that restore_cfg does not take; edit it before restoring.
  Restore_Error: unknown HBA config option!
  $ ktcfg | tail -3
  backup_cfg   :Backup current HBA,RAID configuration and autoload data.
  restore_cfg  :Restore HBA,RAID and AutoLoad configuration from a text file.
  
