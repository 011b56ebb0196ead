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
  
  $ kt 1 ? | sed '1,/^---/d; /^ /d; s/ .*//' | paste -s -d ' '
  ? help devmap adapter assign flash rescan cc create delete event get info init migrate rebuild set enc import locate mp report aesop aesentry aesport forceonline smart 
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
