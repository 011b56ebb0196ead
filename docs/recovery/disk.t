An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## A disk is dead

  $ ktsim disk fail 1 --force

The virtual disk works on without redundancy: nothing is lost yet, and the next loss would be one too many. The event
log names the disk.

  $ kt info -o vd -i 0 | grep -e ^name -e ^array -e ^status
  name:                orders
  array id:            0
  status:              degraded
  $ kt event | grep Description | head -3
  Description:  Virtual Disk 0 is degraded
  Description:  Physical disk 1 is set down
  Description:  Physical disk 1 read write error.

Where a spare fits, rebuilding has begun and "BGA progress" shows it: then there is no hurry. Either way the disk has to
be replaced. Let its bay blink, so that the right one is pulled.

  $ kt locate -i 1 -a on
  Success to set PD 1 LED status 
  $ ktsim disk replace 1 --force
  $ kt locate -i 1 -a off
  Success to set PD 1 LED status 

A new disk in the bay of the lost one is taken at once where the adapter rebuilds by itself.

  $ kt info -o vd -i 0 | grep -e ^status -e '^BGA progress'
  status:              degraded
  BGA progress:    rebuilding is 0% done

Where it does not, or when the new disk sits in another bay, start it: *rebuild -l 0 -d 1*, with the array's id (the
virtual disk's on an LD-based adapter) and the new disk's.

  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ kt info -o vd -i 0 | grep ^status
  status:              online
