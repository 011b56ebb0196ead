Choosing the adapter, its number, rescanning, versions and error texts.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt adapter
  Total number of adapters: 2
  Current default adapter ID for CLI commands: 0
  $ for words in "-i 2" "-i 257" "-i x" "-i 1 --id 0"; do kt adapter $words || echo "= $?"; done | joined
  Adapter 2 does not exist. | = 1 | -i : invalid adapter id 'x' | = 1 | Duplicated option specified. | = 1
  $ kt rescan -a SCAN
  Invalid action!
  [1]
  $ kt rescan -a getcount
  
  Get Rescan Count : (0).
  $ kt rescan -a scan -a getcount -f
  
  Scan Adapter is returned successfully.
  Total number of adapters: 2
  Current default adapter ID for CLI commands: 0
  
  Get Rescan Count : (1).

A failing scan keeps what is there; one that finds nothing ends the program.

  $ ktsim fault KT_API_RescanAdapter 20
  $ kt 1 rescan -a scan -a getcount
  
  Scan Adapter failed (error 20: Link time out).
  
  Get Rescan Count : (1).
  [20]
  $ ktsim fault clear
  $ ktsim fault KT_API_RescanAdapter 0

  $ kt error -c 54; kt error -c 2; for words in "-c 256" "-c -1" --help; do kt error $words 2>&1 || echo "= $?"; done | joined
  
  Error code 54: Specified physical disk  is a spare drive.
  
  Error code 2: Unknown error.
  Invalid error code | = 1 | -c : id should be a number | = 1 | error: unrecognized option '--help' | = 1
