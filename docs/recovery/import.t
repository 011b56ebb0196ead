An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## A set of disks of another adapter

  $ ktsim disk insert 0 1 2 --from used.json
  Disk 0 of used.json is disk 4 here.
  Disk 1 of used.json is disk 5 here.
  Disk 2 of used.json is disk 6 here.
  $ kt info -o vd -i 1 | grep -e ^name -e ^status -e '^PD RAID'
  name:                mail
  status:              importable foreign
  PD RAID setup:       4 5 6 

All of them are there, or as many as the level needs. Import the virtual disk; its array comes with it.

  $ kt import -i 1
  $ kt info -o vd -i 1 | grep -e ^name -e ^array -e ^status
  name:                mail
  array id:            1
  status:              online
  $ kt info -o array -i 1 | grep -e ^Name -e '^PD IDs' -e ^Status
  Name:                old
  PD IDs:              4 5 6
  Status:              functional
