An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## A RAID5 is offline after two losses

  $ ktsim disk pull 1 --force
  $ ktsim clock advance 1h
  $ ktsim disk pull 2 --force
  $ kt info -o vd -i 0 | grep -e ^status -e '^PD RAID'
  status:              offline
  PD RAID setup:       0 * * 

Create, initialize and wipe nothing now: what is on the disks is all there is. Find out which disk was lost last. Up to
that moment the virtual disk worked, so this disk and those that remain hold the same data; the one that was lost first
has missed what was written since.

  $ kt event | grep -e Time -e Description | head -8
  Time:         Mon Jan  5 09:00:00 2026
  Description:  Virtual Disk 0 is offline
  Time:         Mon Jan  5 09:00:00 2026
  Description:  Physical disk 2 is plugged out
  Time:         Mon Jan  5 08:00:00 2026
  Description:  Virtual Disk 0 is degraded
  Time:         Mon Jan  5 08:00:00 2026
  Description:  Physical disk 1 is plugged out

Disk 2 was the last. Bring it back: a loose cable, a dead bay or a dead shelf are more often the reason than the disk.

  $ ktsim disk insert 2
  $ kt info -o vd -i 0 | grep -e ^status -e '^PD RAID'
  status:              degraded
  PD RAID setup:       0 * 2 

The data can be read again; save what is dear before anything else. Then the first one follows and is rebuilt from the
others, whatever it still holds.

  $ ktsim disk insert 1
  $ kt info -o vd -i 0 | grep -e '^PD RAID' -e '^BGA progress'
  PD RAID setup:       0 1 2 
  BGA progress:    rebuilding is 0% done
  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ kt info -o vd -i 0 | grep ^status
  status:              online

When the last one is dead for good, the virtual disk is lost: delete it, create it anew and restore a backup.
