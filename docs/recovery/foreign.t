An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## A disk of another adapter

  $ ktsim disk insert 0 --from used.json
  Disk 0 of used.json is disk 4 here.

A disk that was part of a virtual disk elsewhere brings its share along; "\*" are the members that are missing.

  $ kt info -o vd -i 1 | grep -e ^name -e ^status -e '^PD RAID'
  name:                mail
  status:              not importable foreign
  PD RAID setup:       4 * * 

It is not free, and too little of the virtual disk is there to import it.

  $ kt assign -d 4
  
  Failed to assign disk 4 as global spare disk (error 56: Specified physical disk is assigned to a virtual disk).
  [56]
  $ kt import -i 1
  Failed to import VD (error 80: Virtual disk is not importable)
  [80]

Find the other members, or, when nobody needs the data, wipe the disk, which takes *-f*: *wipe* does not ask.

  $ kt wipe -d 4 -f
  
  Wipe PD 4 is returned successfully.
  $ kt assign -d 4
  
  Succeeded to assign the disk as a global spare disk.
