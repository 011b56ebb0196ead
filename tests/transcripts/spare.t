Spare disks and wiped disks: what is refused and what is asked before anything happens to a disk.

  $ . "$TESTDIR/setup.sh"
  $ changes() { calls | grep -e Free -e Wipe | cut -d ' ' -f 1,3-; }
  $ lab default
  $ echo n | kt assign -d 12
  PD 12 has file system on it. Data may get lost if it is assigned as spare disk.
  Are you sure you want to assign it as spare disk? (y or n)
  $ kt assign -o hba -d 12 < /dev/null
  PD 12 has file system on it. Data may get lost if it is assigned as spare disk.
  Are you sure you want to assign it as spare disk? (y or n)
  $ kt assign -o array -d 11
  Array id is not specified
  [1]
  $ kt assign -d 11 -a 1
  -a option is not allowed when assigning global spare
  [1]
  $ kt 1 assign -o array -d 7 -a 0
  -o : array is not supported on this adapter
  [1]
  $ kt assign -d 99
  
  Failed to assign spare disk (error 9: Invalid physical disk id).
  [1]
  $ kt delete -o spare -i 11
  PD 11 is not spare disk.
  $ kt delete -o spare -i 99
  
  Unable to get info of spare 99 (error 9: Invalid physical disk id)
  [9]
  $ kt wipe -d 300
  -i : invalid id 300
  [1]
  $ kt wipe -d x
  -d : invalid PD id 'x'
  [1]
  $ changes
