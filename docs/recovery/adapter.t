An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"

## Replacing an adapter

Save the settings while the adapter still works; best right after it was set up, and to another machine.

  $ ktcfg backup_cfg -f hba0.txt | tail -1
  [WRITE POLICY] is the cache in force now; one that was auto comes back as on or off.
  Backup_cfg command is returned successfully!
  $ ktsim --state new.db create --lab empty
  $ export KTRAID_SIM=$PWD/new.db
  $ ktsim disk insert 0 1 2 3 --from state.db
  Disk 0 of state.db is disk 8 here.
  Disk 1 of state.db is disk 9 here.
  Disk 2 of state.db is disk 10 here.
  Disk 3 of state.db is disk 11 here.

The virtual disks are on the disks, not on the adapter: on the new one they are a set of another adapter.

  $ kt info -o vd -i 0 | grep -e ^name -e ^status -e '^PD RAID'
  name:                orders
  status:              importable foreign
  PD RAID setup:       8 9 10 
  $ kt import -i 0
  $ kt info -o vd -i 0 | grep -e ^name -e ^status
  name:                orders
  status:              online

Then the settings. *ktcfg restore\_cfg* ends with status 1 even when all went well; its text says what happened. Never
give *--raid* here: it deletes all virtual disks, those just imported included, and creates empty ones.

  $ ktcfg restore_cfg -f hba0.txt | tail -2 | head -1
  Restore HBA and Port config is returned successfully!

Keys of encrypted ports are not in the file: put them into the entries again ("An encryption port is locked").
