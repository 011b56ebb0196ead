Help: the lists of both command sets and the help of single commands.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt help
  
  Legend: 
    [options] - the options within [] are optional. 
    <x|y|z>   - choose one of the x, y or z. 
    [<x|y|z>] - choose none or one of the x, y or z. 
  
  Abbreviation: 
      VD  - Virtual Disk,   Array  - Disk Array 
      PD  - Physical Disk,  BGA - BackGround Activity 
  
  Type '-output [filename]' to output to a file. 
  Type 'help' to display this page. 
  Type 'help command' to display the help page of 'command'. 
  Type 'command -h' to display help for 'command'. 
  
  Command name is not case sensitive and may be abbreviated if the  
  abbreviation is unique. Most commands support both short (-) and   
  long (--) options.Long option names may be abbreviated if the abbreviation  
  is unique. A long option may take a parameter of the form '--arg=param'  
  or '--arg param'. Option name is case sensitive, option parameter is not.  
  
  COMMAND   BRIEF DESCRIPTION 
  -----------------------------------------------------------------
  ?            :Get brief help for all commands.
  help         :Get brief help for all commands or detail help for one command.
  devmap       :Map device ID to device magic number in the OS.
  adapter      :Default adapter the following CLI commands refers to.
  assign       :Assign a disk as spare drive.
  flash        :Update, backup or erase flash image and erase hba or pd page.
  locate       :Locate the specified PD.
  rescan       :Rescan the adapters
  cc           :Start, stop, pause or resume VD Consistency Check.
  create       :Create virtual disk or array.
  delete       :Delete virtual disk or spare drive.
  event        :Get the current events.
  get          :Get configuration information of VD, PD, Array, HBA or Driver.
  info         :Display adapter(hba), virtual disk(vd), disk array,
                physical disk(pd), Port multiplexer(pm), expander(exp),
                block disk(blk) or spare drive information.
  init         :Start, stop, pause or resume VD initialization.
  migrate      :Start,pause or resume VD migration.
  set          :Set configuration parameters of VD, PD, Array, HBA or BBU.
  rebuild      :Start, pause or resume rebuilding array.
  smart        :Display the smart info of physical disk.
  set          :Set configuration parameters of VD, PD, Array, HBA or BBU.
  enc          :Get enclosure, enclosure element or enclosure config information.
  import       :Import a virtual disk.
  copyback     :Pause or resume copy back on an array.
  mp           :Start, stop, pause or resume media patrol for a physical disk.
  rescan       :Rescan the adapters
  message      :Get the current events.
  
  $ kt 1 ? | sed '1,/^---/d' | cut -c 1-30
  ?            :Get brief help f
  help         :Get brief help f
  devmap       :Map device ID to
  adapter      :Default adapter 
  assign       :Assign a disk as
  flash        :Update, backup o
  rescan       :Rescan the adapt
  cc           :Start, stop, pau
  create       :Create virtual d
  delete       :Delete virtual d
  event        :Get the current 
  get          :Get configuratio
  info         :Display adapter(
                physical disk(pd
                block disk(blk) 
  init         :Start, stop, pau
  migrate      :Start,pause or r
  rebuild      :Start, stop, pau
  set          :Set configuratio
  enc          :Get enclosure, e
  import       :Import a virtual
  locate       :Locate the speci
  mp           :Start, stop, pau
  report       :report a conflic
  aesop        AES operations
  aesentry     AES operations
  aesport      AES operations
  forceonline  Forceonline the p
  smart        :Display the smar
  
  $ kt help -i
  register     :operation the register on adapter.
  nvsram       :Read/write nvsram contents for test.
  ssd          :Tolvane SSD Diagnostic functions.
  ssdop        :SSD Operations.
  devmap       :Map device ID to device magic number in the OS.
  maxcreatesize :Get maxsize that vd can create with.
  wipe         :Wipe out disk drive MDD data.
  status       :Get SMART return status of a PD.
  error        :Translate error code to error description.
  version      :Get application version.
  flash        :Update, backup or erase flash image and erase hba or pd page.
  pause        :Pause all background activities on specified controller.
  tandem       :Tandemix Test Command.
  
  $ kt help --internal -i
  Duplicated option specified.
  [1]
  $ kt help -x
  help: invalid option -- 'x'
  Description:Get brief help for all commands or detail help for one command.
  help [-i] [command ...]
  
  Options:
      -i, --internal
          List the commands for maintenance and test.
      -h
  
  Examples:
      help
  
      List all commands.
  
      help info create
  
      Show the detail help of the commands info and create.
  
  $ kt help nosuch ERROR version
  No help available for 'nosuch'
  No help available for 'ERROR'
  Description:Get application version.
  version 
  
  Options: N/A
  
  $ ktsetup 1 help -output FILE
  $ cat FILE
  SG driver version 3.5.36.
  No help available for 'FILE'
  $ kt rescan -h
  Description:Rescan the adapters
  rescan [-a ][-h]
  
  Options:
      -a, --action  scan/getcount
      -h, --help
  
  Examples:
      rescan -a scan
      Rescan the adapters.
      rescan -a getcount --force
      Get the rescan count, force unlock API.
  
