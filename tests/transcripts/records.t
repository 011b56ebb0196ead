What things are made with when a lab says nothing of it: every field of their records that is not 0.

  $ . "$TESTDIR/setup.sh"
  $ made=$(for type in SATA SAS "SATA SSD" "SAS SSD" PATA ATAPI; do echo "{\"type\": \"$type\"},"; done)
  $ echo '{"adapters": [{"battery": true, "disks": ['"${made%,}"']}, {"type": "LD-based"}]}' > made.json
  $ lab made.json; ktsim show > all
  $ fields() { grep "$1" all | sed -n "$2" | tr -d '"{}' | tr , ' ' | sed 's/^ *id:0 //; s/]$//' | fold -sw 130; }
  $ fields '"HDType"' 's/^.*\("HDType.*\)"SerialNo.*\("FWV.*\)"WWN[^,]*,/\1\2/p'
  HDType:1 PIOMode:4 MDMAMode:2 UDMAMode:6 ConnectionType:1 FeatureSupport:1905 Model:Gannet GT1000G FWVersion:GT03A1 
  Size:1953525168 CurrentPIOMode:4 CurrentMDMAMode:2 CurrentUDMAMode:6 BlockSize:512 Media_Rotation_Rate:7200 
  HDType:4 PIOMode:255 MDMAMode:255 UDMAMode:255 ConnectionType:4 FeatureSupport:3697 Model:Fulmar FX1000G-SAS FWVersion:FX12 
  Size:1953525168 CurrentPIOMode:255 CurrentMDMAMode:255 CurrentUDMAMode:255 BlockSize:512 Media_Rotation_Rate:10500 
  HDType:17 PIOMode:4 MDMAMode:2 UDMAMode:6 ConnectionType:1 FeatureSupport:1905 Model:Petrel PS1000G SSD FWVersion:PS41C 
  Size:1953525168 CurrentPIOMode:4 CurrentMDMAMode:2 CurrentUDMAMode:6 BlockSize:512 HD_SSD_Type:1 Media_Rotation_Rate:1 
  HDType:20 PIOMode:255 MDMAMode:255 UDMAMode:255 ConnectionType:4 FeatureSupport:3697 Model:Petrel PX1000G SAS SSD FWVersion:PX20 
  Size:1953525168 CurrentPIOMode:255 CurrentMDMAMode:255 CurrentUDMAMode:255 BlockSize:512 HD_SSD_Type:1 Media_Rotation_Rate:1 
  HDType:2 PIOMode:4 MDMAMode:2 UDMAMode:6 ConnectionType:2 FeatureSupport:80 Model:Gannet GP1000G FWVersion:GP01 Size:1953525168 
  CurrentPIOMode:4 CurrentMDMAMode:2 CurrentUDMAMode:6 BlockSize:512 Media_Rotation_Rate:7200 
  HDType:9 PIOMode:4 MDMAMode:2 UDMAMode:6 ConnectionType:1 DeviceType:5 FeatureSupport:256 Model:Auk DVD-16 FWVersion:1.04 
  CurrentPIOMode:4 CurrentMDMAMode:2 CurrentUDMAMode:6 BlockSize:512] 
  $ fields '"VenID"' '$p'
  DriverVersion.VerMajor:4 DriverVersion.VerMinor:1 DriverVersion.VerBuild:2031 BIOSVersion.MajorVersion:1 
  BIOSVersion.MinorVersion:4 BIOSVersion.BuildNumber:1023 FirmwareVersion.MajorVersion:2 FirmwareVersion.MinorVersion:3 
  FirmwareVersion.BuildNumber:1114 BootLoaderVersion.MajorVersion:1 BootLoaderVersion.BuildNumber:1003 SystemIOBusNumber:2 
  SlotNumber:2 InterruptLevel:17 VenID:8100 SubVenID:8100 DevID:18240 SubDevID:18240 PortCount:4 PortSupportType:1 Features:255 
  AlarmSupport:1 RevisionID:177 MaxPDPerVD:8 StripeSizeSupported:127 AdvancedFeatures:1040192567 MaxParityDisks:2 
  MaxTotalBlocks:128 MaxBlockPerPD:8 MaxHD:128 MaxPM:4 MaxLogicalDrive:32 LogicalDriverMode:3775 WWN:500a1f4000100100 MaxHD_Ext:128 
  MaxTotalBlocks_V2:128 MaxAESPort:4 MaxTandemHdd:1 MaxSSDPerTandemix:2 MaxAESEntry:10 MaxSSDSegment:4 SerialNo:KS260101004718 
  PortSasAddress:[500a1f4000100100 500a1f4000100101 500a1f4000100102 500a1f4000100103] MaxSpeed:3 CurrentSpeed:3 MaxLinkWidth:8 
  CurrentLinkWidth:8 img_health:1 autoload_img_health:1 boot_loader_img_health:1 firmware_img_health:1 boot_rom_img_health:1 
  hba_info_img_health:1 ModelNumber:Tarn S4h] 
