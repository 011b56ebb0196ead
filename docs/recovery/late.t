An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## A set of which the last disk arrives late

  $ ktsim disk insert 0 1 --from used.json
  Disk 0 of used.json is disk 4 here.
  Disk 1 of used.json is disk 5 here.
  $ kt info -o vd -i 1 | grep -e ^status -e '^PD RAID'
  status:              importable foreign
  PD RAID setup:       4 5 * 
  $ kt import -i 1
  $ ktsim disk insert 2 --from used.json
  Disk 2 of used.json is disk 6 here.

Two disks of a RAID5 are enough to import it. Since then the set has gone on without the third, which now shows a
virtual disk of its own.

  $ kt info -o vd -i 1 | grep -e ^status -e '^PD RAID'
  status:              degraded
  PD RAID setup:       4 5 * 
  $ kt info -o vd -i 2 | grep -e ^name -e ^status -e '^PD RAID'
  name:                mail
  status:              plugin conflicted
  PD RAID setup:       * * 6 

"plugin conflicted" says that the array exists here already, without this disk. What the disk holds is behind the times.
Make sure by the name that it belongs there; then wipe it by force and rebuild the array with it.

  $ kt rebuild -l 1 -d 6
  PD 6 is not a free disk.
  [1]
  $ kt wipe -d 6 -f
  
  Wipe PD 6 is returned successfully.
  $ kt rebuild -l 1 -d 6
  Start rebuild successfully
  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ kt info -o vd -i 1 | grep -e ^status -e '^PD RAID'
  status:              online
  PD RAID setup:       4 5 6 

Better: wait with the import until all disks are there.
