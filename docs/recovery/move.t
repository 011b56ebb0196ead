An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## Moving an array to another machine

Let what the virtual disk is busy with come to its end, stop using it, and take its disks out with the power off; all of
them, and no other.

  $ kt info -o vd -i 0 | grep -e ^status -e '^BGA status' -e '^PD RAID'
  status:              online
  BGA status:          N/A
  PD RAID setup:       0 1 2 
  $ ktsim power off && ktsim disk pull 0 1 2 --force

  $ ktsim --state other.db create --lab empty
  $ export KTRAID_SIM=$PWD/other.db
  $ ktsim disk insert 0 1 2 --from state.db
  Disk 0 of state.db is disk 8 here.
  Disk 1 of state.db is disk 9 here.
  Disk 2 of state.db is disk 10 here.

On the other machine the order and the bays do not matter. Import only when all are there.

  $ kt info -o vd -i 0 | grep -e ^name -e ^status -e '^PD RAID'
  name:                orders
  status:              importable foreign
  PD RAID setup:       8 9 10 
  $ kt import -i 0
  $ kt info -o vd -i 0 | grep -e ^name -e ^status
  name:                orders
  status:              online

Global spares stay behind; assign one here. Disks that are encrypted want their key first ("An encryption port is
locked").

  $ kt assign -d 0
  
  Succeeded to assign the disk as a global spare disk.
