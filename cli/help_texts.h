// The help texts: for each command its short text and its long text. help prints them verbatim,
// including tabs, trailing blanks and misspellings.
#pragma once

// Compatibility: every byte of the texts; scripts compare them.
// clang-format off

inline constexpr char CLICMD_SHORT_HELP[] = R"(CLI Help
Usage: help         display all the valid commands
       help <cmd>   display the usage of the specified command

Summary:
   Displays the main help window.  
)";

inline constexpr char CLICMD_HELP_HELP[] = R"(Commands are designed in the following format:
 OBJECT -> ACTION -> PARAMETER 

The following commands are supported: 

 battery     View battery information or to recondition a battery.

 bga         View status of all current background activities.
             Enable or disable relevant background activities.
             Modify the background task rate for each of the background tasks.

 buzz        View buzzer status, enable/disable and turn on/off buzzer.

 ctrl        View or edit controller information and settings.

 enclosure   View or edit enclosure and SEP information and settings.
             Locate an enclosure via LEDs.

 event       View or clear events logs

 exit        Exit the program.

 export      export certain type of configuration in the current system to the 
             specified file.

 extent      View or edit extent information and settings.

 import      Import certain type of configuration files to the current system.

 init        View logical drive initialization status and progress.
             Start, pause or resume an initialization or a quick
             initialization.

 logdrv      View or edit logical drive information and settings.
             Locate a logical drive via LEDs.

 migrate     Start and monitor disk array migration process.

 mp          View media patrol status and progress.
             Start, stop, pause, or resume media patrol.

 phydrv      View or edit physical drive information and settings.
             Locate a physical drive via LEDs.

 rc          View redundancy check status and progress.
             Start, stop, pause or resume redundancy check.

 rb          View rebuild status and progress.
             Start, pause, or resume a rebuild process.

 sync        View logical drive synchronization status and progress.

 help        When used alone will display this menu.
             When used in conjunction with a command (e.g.: help array) it
             will display help information for that particular command.

 ?           This can be used in place of the help command or optionally can
             be used as a switch for a command such as ? array to provide
             command usage

COMMANDS AND OPTIONS ARE NOT CASE SENSITIVE.

NOTES:

Not all extended keys are supported.  However, BACKSPACE and the left and
right arrow keys can be used for command line editing.  In addition, the up
and down arrow keys will allow scrolling through the command history buffer.

Each command when used alone, such as "logdrv" will display a summary of
relevant information. If more information is desired, the -v verbose mode can
be used.  This will provide information for all relevant aspects of that
command.

Usage terminology is as follows:
[square braces] depict an optional switch
<arrow braces> depict user input
)";

inline constexpr char CLICMD_SHORT_BATTERY[] = R"(Battery Information and Settings 
Usage: battery [-a <action>] [-b <batId>]
       battery -a recondition -b <batId>
)";

inline constexpr char CLICMD_HELP_BATTERY[] = R"(battery

Usage:
   battery [-i <crtlId>]

Summary:
   Battery is used for displaying the current status of a battery indicating
   the voltage and temperature.

-i <controller ID>    Used to specify which enclosure the battery resides 
                      in. if it is undefined, the default will be set Controller
					  ID to 0.

Examples:
   battery
   battery -i 1
)";

inline constexpr char CLICMD_SHORT_BGA[] = R"(Background Activity Status and Settings
Usage: bga [-a <action>]
)";

inline constexpr char CLICMD_HELP_BGA[] = R"(bga

Usage:
   bga [-a <action>] [-l <LD ID>] [-i <ctrl ID>]

Summary:
   Bga is used to display all current background activities as well as to
   allow the user to control the rates at which the background activities
   will run.

-a <action>          Which action to perform.

   list              (Default) List current background activities.

-l [<LD ID>]         Logical drive ID.

-i [<ctrl ID>]       Controller ID. If it's not specified, it will be 0.

Examples:
   bga
   bga -a list -l 2 -i 0
)";

inline constexpr char CLICMD_SHORT_BUZZ[] = R"(Buzzer Status and Control
Usage:
   buzz [-a <action>] [-i <CtrlId>] [-c <Count>]
   buzz -a list [-i <CtrlId>] [-c <Count>]
   buzz -a enable [-i <CtrlId>]
   buzz -a disable [-i <CtrlId>]
   buzz -a on [-i <CtrlId>]
   buzz -a off [-i <CtrlId>]
)";

inline constexpr char CLICMD_HELP_BUZZER[] = R"(buzz

Usage:
   buzz [-a <action>] [-i <CtrlId>] [-c <Count>]
   buzz -a list [-i <CtrlId>] [-c <Count>]
   buzz -a enable [-i <CtrlId>]
   buzz -a disable [-i <CtrlId>]

Summary:
   Buzz is used to view the status of the buzzer(s), and to enable and disable
   the buzzer.

-a <action>          Which action to perform.

   list              (Default) List the status of the buzzer(s).
   enable            Enable the buzzer.
   disable           Disable the buzzer.

-i <CtrlId>          The id of controller where the buzzer resides.

-c <Count>           Used when displaying multiple buzzers.  This will
                     display the next <Count> buzzers beginning from 1 or 
                     specified by <CtrlId>. By default, it displays all the
                     available buzzers.
Examples:

buzz
	buzz -a enable -i 0
	buzz -a disable -i 1
)";

inline constexpr char CLICMD_SHORT_CTRL[] = R"(Controller Informaiton and Settings
Usage: ctrl [-a <action>] [-i <ctrlId>] [-c <ctrl count>] [-v]
       ctrl -a mod [-t <Type>] -i <ctrlId> -s "<list of settings>"
         -t <Type>: raid 
)";

inline constexpr char CLICMD_HELP_CONTROLLER[] = R"(ctrl

Usage:
   ctrl [-a <action>] [-i <ctrlId>] [-c <ctrl count>] [-v]
   ctrl -a mod [-i <ctrlId>] -s "<list of settings>"

Summary:
   Ctrl is used to display or change controller information and settings.

Options:

-a <action>          Which action to perform.

   list              (Default) List current information of the controller(s).
   mod               Make changes to one of the settings.
-i <ctrl ID>         Controller ID that information or settings are for.

-c <ctrl count>      Controller count. Used if the user wants information for
                     multiple controllers. Default as maximum controllers found 
                     in the system.

-s "<option>=<value>"
                     Used to specify which settings to change.
   smart=            To enable or disable polling drive SMART status.
      enable         
      disable        

   autorebuild=      To enable or disable auto rebuild feature.
      enable         
      disable        

   smartpoll=
      1..255         To set the time interval in number of minutes to poll the
                     drive SMART status.

   encpoll=
      1..255         To set the time interval in number of minutes to poll the
                     enclosure drive status.

   rebuildrate=
      1..255         To set the rebuild rate.

   syncrate=
      1..255         To set the synchronization rate.

   initrate=
      1..255         To set the initialization rate.

   migraterate=
      1..255         To set the migration rate.

   mprate=
      1..255         To set the media patrol rate.

   rebuildpolicy=    To enable or disable rebuild without specifying.
      enable         spare drive
      disable        

-v                   Verbose mode. Used with -a list.

Examples:
   ctrl
   ctrl -v
   ctrl -a mod -i 1 -s "autorebuild=enable, smartpoll=30" 
)";

inline constexpr char CLICMD_SHORT_ENCLOSURE[] = R"(Enclosure Information and Settings
Usage: enclosure [-a <action>] [-e <enclId>] -v 
       enclosure -a mod -e <enclId> -s <list of settings>
       enclosure -a locate -e <encl id> [-t <FRU type>] [-f <FRU id>]
)";

inline constexpr char CLICMD_HELP_ENCLOSURE[] = R"(enclosure

Usage:
   enclosure [-a <action>] [-e <enclId>] [-i <ctrlId>] 
   enclosure -a locate [-e <enclId>] [-i <ctrlId>] [-s <seconds>]

Summary:
   The enclosure command is used to provide status and information about the
   various components of the enclosure unit.  It is also used to set
   thresholds for temperature and polling.

Options:

-a <action>          Which action to perform.

   list              (Default) Displays information and status of
                     the enclosure.
   locate            Allows the user to locate an enclosure by flashing LEDs

-e <enclosure ID>    This identifies which enclosure you wish to view,
                     locate or edit information for.  This is primarily used
                     when there are expansion JBOD enclosures connected
                     together.

-i <ctrl ID>       	 Controller ID that information or settings are for. If it 
                     is not specified, it will be 0.

-s <seconds>       	 the number of seconds for flashing the enclosure. If it doesn't
                     specifed, it will be 0 and means stop flashing the enclosure.

Examples:
   enclosure
   enclosure -e 1
   enclosure -a locate -e 1 -i 0 -s 30
)";

inline constexpr char CLICMD_SHORT_EVENT[] = R"(Event Information and Settings
Usage: event [-a <action>] [-l <location>] [-i <SeqNo>] [-c <event count>]
             [-v]
       event -a clear [-l <location>]
         -l <location>: ram(default)|nvram
)";

inline constexpr char CLICMD_HELP_EVENT[] = R"(event

Usage:
   event [-a <action>] [-i <ctrl ID>] [-c <event count>] [-v]

Summary:
   This command can display the event logs from each controller

Options:

-a <action>          Which action to perform.

   list              (Default) Displays the events for the specified location
                     (RAM events are displayed if no location is specified)

-i <ctrl ID>         The events for which controller ID. Default is 0.

-c <event count>     Used to specify the number of events to retrive. This is
                     used when displaying events.

-v                   Verbose mode. Used with -a list.

Examples:
   event
   event -v
   event -c 20
   event -a list -i 0
)";

inline constexpr char CLICMD_SHORT_EXIT[] = R"(Exit the CLI
Usage: exit
)";

inline constexpr char CLICMD_SHORT_EXPORT[] = R"(Export the setting of controllers, physical drives and logical drives to a configuration file
Usage: export -t <DataType list> -f <fileName>
)";

inline constexpr char CLICMD_HELP_EXPORT[] = R"(export

Usage: export -t <DataType list> -f <fileName>

Summary:
   export certain type of configuration in the current system to the 
   specified file. 

Options:

-t <DataType list>   Specifies what type of information to export. 

    0                 All data settings including item 1 to 3
    1                 controller data setting only
    2                 physical driver data setting only
    3                 logical drive data setting only
Note: For the combination of any items, separate them by space. 

-f <file name>       Specifies the name of the file to be exported. 

Examples:
    export -t "1" -f allset.xml
    export -t "1 3" -f selectedSet.txt
)";

inline constexpr char CLICMD_SHORT_EXTENT[] = R"(Event Information and Settings
Usage: extent [-a <action>] [-i <ctrlId>] [-p <PdId>] [-c <Pd count>] [-v]
       extent -a spare -p <PdId> -e <ext ID> -i <ctrlId> [-l <ld ID>]
       extent -a free -p <PdId> -e <ext ID> -i <ctrlId>
       extent -a add -p <PdId> -e <ext ID> -i <ctrlId>> -l <ld ID>
       extent -a split -p <PdId> -e <ext ID> -i <ctrlId>> -o <split offset in MB>
       extent -a delete -p <PdId> -e <ext ID> -i <ctrlId>>
)";

inline constexpr char CLICMD_HELP_EXTENT[] = R"(extent

Usage:
   extent [-a <action>] [-i <ctrlId>] [-p <PdId>] [-c <Pd count>] [-v]
   extent -a spare -p <PdId> -e <ext ID> -i <ctrlId> [-l <ld ID>]
   extent -a free -p <PdId> -e <ext ID> -i <ctrlId>
   extent -a add -p <PdId> -e <ext ID> -i <ctrlId>> -l <ld ID>
   extent -a split -p <PdId> -e <ext ID> -i <ctrlId>> -o <split offset in MB>
   extent -a delete -p <PdId> -e <ext ID> -i <ctrlId>>

Summary:
   Allows the user to view and do the operation regarding the
   extents in HBA controller.  

Options:

-a <action>          Which action to perform.

   list              (Default) Displays all extent in the physical drive, 
                     size, activity status, assignment status, start LBA.

   spare             Make the extent as a spare extent. It can be global spare
                     or dedicated spare to a logical drive.

   free              Make the extent as a free extent.

   add               Add the extent into an array.

   split             split the extent starting at the defined split offset. 

   delete            delete the extent

-p <PD ID>           Specifies the physical drive ID.

-l <ld ID>           Specifies the logical drive ID.

-e <ext ID>          Extent Index within the physical drive.

-i <ctrl ID>         Specifies the controller ID.

-c <PD count>	     Used when more than one physical drive is to be specified
                     and their ID numbers are sequential. If it is undefined, it 
					 will be set to the maximum number of disk supported.

-o <split offset in MB>  Split offset in MB is used when split the extent. 

 -v                  Verbose mode. Used with -a list.

Examples:
   extent
   extent -v
   extent -a free -p 1 -e 0 -i 0
)";

inline constexpr char CLICMD_SHORT_IMPORT[] = R"(Apply and list the setting of the configuration file to the system
Usage: import [-k <Ctrl Index list>] [-p <PD Index list>] [-l <LD Index list>] 
       [-a] -f <fileName> [-c] [-i]
)";

inline constexpr char CLICMD_HELP_IMPORT[] = R"(import

Usage: import [-k <Ctrl Index list>] [-p <PD Index list>] [-l <LD Index list>]
       [-a] -f <fileName> [-c] [-i]

Summary:
   Import certain type of configuration files to the current system.

Options:

-k <ctrl Index list>      Used to specify which controller setting with
                          index for configuration and display

-p <PD Index list>        Used to specify which physical drive setting with
                          index for configuration and display

-l <LD Index list>        Used to specify which logical drive setting with
                          index for configuration and display

-a                        Used all settings in the configuration file for
                          configuration and display. It is the default option.

-f <file name>            Specifies the name of the file to import.

-i                        Get and display all information of imported file only.
                          The configuration of file is not really applied to HBA
                          controller. If it's specified, '-c' will be ignored

-c                        Clear the configuration before setting the configuration.
                          It applies to logical drive setting and extent setting.
                          It will delete the logical drive(s)/extent(s) in the
                          controller and create new one(s) according to the settings. 

Examples:
   import -k "0 1" -f ctrl.xml
   import -a -c -f all.inf
   import -l "0 1" -f ld.xml
   import -e "2 4 5" -k "0" -f extctrl.xml
   import -p "1 2" -l "0" -f drives.xml
)";

inline constexpr char CLICMD_SHORT_INIT[] = R"(Logical Drive Initialization Progress and Control
Usage: init [-a <action>] [-l <LdId>]
       init -a start -l <LdId> [-q <size>] [-p <pattern>]
       init -a pause -l <LdId> 
       init -a resume -l <LdId> 
)";

inline constexpr char CLICMD_HELP_LDINIT[] = R"(Init

Usage:
   init [-a <action>] [-l <LdId>] [-i <ctrl ID>]
   init -a start -l <LdId> -i <ctrl ID>
   init -a pause -l <LdId> -i <ctrl ID>
   init -a resume -l <LdId> -i <ctrl ID>

Summary:
   This command is used to start, pause, or resume a LDI (Logical Drive
   Initialization) or a Quick Init.  An LDI will write to the entire logical
   drive space, where a Quick Init will write to the first and last few 
   megabytes of the logical drive.

Options:

-a <action>          Which action to perform.

   list              (Default) Displays a list of the current initializations
                     in progress or paused along with their statuses.
   start             Start an initialization or quick initialization.
   pause             Pause an initialization or quick initialization.
   resume            Resume an initialization or quick initialization.

-l <LD ID>           Specifies on which logical drive to perform the
                     initialization or quick initialization.

-i <ctrl ID>         Specifies on which controller to perform the
                     initialization or quick initialization.

Examples:
   init
   init -a pause -l 0 -i 1
   init -a start -l 2 -i 0
)";

inline constexpr char CLICMD_SHORT_LOGDRV[] = R"(Logical Drive Information and Settings
Usage: logdrv [-a <action>] [-l <LdId>] [-c <Ld count>] [-v]
       logdrv -a locate -l <LdID>
       logdrv -a mod -l <LdId> -s "<list of ld settings>" 
       logdrv -a add -i <ctrl ID> -p "<pdId list>" [-e <extId list>] -z "<list of create ld settings>"
       logdrv -a del -l <LdId> -i <ctrl ID>
)";

inline constexpr char CLICMD_HELP_LOGDRIVE[] = R"(logdrv

Usage:
   logdrv [-a <action>] [-l <LdId>] [-i <ctrl ID>] [-c <Ld count>] [-v]
   logdrv -a locate -l <LdID> -i <ctrl ID> -d <duration>
   logdrv -a mod -l <LdId> -i <ctrl ID> -s "<list of ld settings>"
   logdrv -a add -i <ctrl ID> -p "<pdId list>" [-e <extId list>] 
   -z "<list of create ld settings>"
   logdrv -a del -l <LdId> -i <ctrl ID>

Summary:
   Logdrv will display information about the current logical drives as well
   as the ability to change settings for those logical drives.

   To create a logical drive please see the array command.

Options:

-a <action>          Which action to perform.

   list              (Default) Displays a summary of all or a specific or a
                     specified number of logical drives.
   mod               Allows the user to change the logical drive settings
   locate            Locate a logical drive within the enclosure by flashing 
                     the LED.
   add            	 Create a logical drive

-l [<LD ID>]         Logical drive ID.

-i [<ctrl ID>]       Controller ID. If it's not specified, it will be 0.

-c [<LD count>]      Logical drive count. Used with -a list.

-d [<duration>]	     Duration for blinking the drive in second. If it's defined 
                     as 0, it will stop the flashing.

-s ["<option>=<value>"]
                     Used to specify which logical drive settings to change.


   writepolicy=      Used to specify the write policy for the logical drive,
                     either write through or write back.
      writethru      Writes are not cached.
      writeback      Writes are cached. **Note: can not be set if ReadPolicy
                     is set to nocache.
      bypass         By pass the write cached mode.
      auto         	 Set the write cached mode to auto.

   lookahead=        Change the lookahead threshold
      1..8

   consolidation=    Enable or disable the consolidation
              enable
	          disable

   name=             Change the name of the logical drive with max
   <new name>        character length of 64.

-p [<pdId list>]	 physical drive ID must be specified when creating a logical drive.

-e [<extId list>]    extent ID specified when creating a logical drive. If it's not
                     specified, the capacity in "-z" option must be specified. 
					 Otherwise, it will fail to create a logical drive.

-z "<option>=<value>"
                     Used to specify the settings for a logical drive when
                     creating a logical drive.

   name=             Assign the name of the logical drive with max character 
   <new name>        length of 64. It must be defined when creating a logical 
					 drive, otherwise it won't create a logical drive.

   Raid=             Used to specify the RAID level of the logical drive.
      raid0          Striping.
      raid1          Two drive mirror.
      raid5          Parity.
      raid10         Even number drives (greater than 2) drive mirror. It must
                     be defined when creating a logical drive, otherwise it
                     won't create a logical drive
      raid50         At least 6 disks to create a raid50 logical drive and
                     the total disk numbers divided by the sub array count
                     must be greater or equal to 3.
      raidMF         Raid 6. The parity count for the Raid6 drive must be
                     smaller than the total disk numbers. The MF symmetric
                     could either be 0 or 1. And the MF shift could be 
                     -(TotalDiskNumber - 1) to (TotalDiskNumber - 1). The
                     array should be :
                     minimum disk size * (TotalDiskNumber - MFParityCount)
      JBOD           Note that JBOD is no more a RAID level that can
                     be created.

   Capacity=	     Used to specify the desired capacity of the logical
                     Drive in mb. If this is defined, the extent ID list will be 
					 ignored as driver will assign which extents belonged to the 
					 logical drive.It's not necessary.

   SectorSize=       512,1024,2048,4096.

   Stripe=           Used to specify the stripe size of the logical drive.
                     The possible parameters are 32KB, 64KB, 128KB.
                     If not specified, the default
                     64KB will be used.

   rounding=         Gigabyte rounding scheme. The default is "none".
		gbb
		10gbb
		none

   init=             Initialization mode. The default is "none".
		none
		quick
		back

   SubArrayCnt=	     sub array count for raid50 only. This parameter is only
                     valid when creating raid50 drive.

   ParityCnt=	     Parity count for RaidMF only. This parameter is only
                     valid when creating raidMF drive. It must be less than
					 the total disk number

   Symmetric=	     Symmetric for RaidMF only. It could be either 0 or 1 and
 		             only valid when creating raidMF drive.

   Shift=	         Shift number for RaidMF only. It could be in the range 
	                 between -(TotalDiskNumber - 1) and (TotalDiskNumber - 1).
	                 This parameter is only valid when creating raidMF drive.

-v                   Verbose mode. Used with -a list.

Examples:
   logdrv
   logdrv -v
   logdrv -a mod -l 0 -i 1 -s "writepolicy=writethru"
   logdrv -a add -i 0 -p "1 2" -e "0 0" -z 
   "name=Newarray,raid=raid0,rounding=gbb"
   logdrv -a add -i 0 -p "1 2" -z "name=Newarray,raid=raid0,capacity=2000"
   logdrv -a locate -l 2 -i 0 -d 0
)";

inline constexpr char CLICMD_SHORT_MIGRATE[] = R"(Disk Array Migration
Usage: migrate [-a <action>] [-d <DaId>]
       migrate -a start -d <DaId> -p <PdIds> -l <LdSettings>
)";

inline constexpr char CLICMD_HELP_MIGRATION[] = R"(migrate

Usage: migrate [-a <action>] [-l <ldID>] [-i <ctrl ID>]
migrate -a start -l <ldID> -i <ctrl ID> [-p <PdIds> -e <extent IDs>] -s "<LdSettings>"
       migrate -a pause -l <ldID> -i <ctrl ID>
       migrate -a resume -l <ldID> -i <ctrl ID>


Summary:
   The migrate command allows the user to migrate logical drives inside a
   particular logical drive. The supported migrations are online capacity 
   expansion, RAID level migration and stripe size migration.

Options:

-a <action>          Which action to perform.

 list                (Default) Displays the migration status of specified 
                     disk array. If no logical drive ID specified, all migration
                     status will be displayed.
 start               start a specific migration progress.

-l <ld ID>           Used to specify the logical drive ID for migration.

-p <PD ID list>      Used to specify which physical drives are to be added in
                     an array.

-i <ctrl ID>         Specifies on which controller to perform the
                     migration or quick initialization.

-e <exttent IDs>     Specifies the extent IDs.

-s "<option>=<value>"
                     Used to specify settings for logical drive migration.

   raid=             Specifies the new logical drive RAID level.
		raid0
		raid1
		raid10
		raid5
		raid50
		raidMF
   count=i          This(i) is an interger and must be input when migrate to raid6 or raid50. 
		Migrate to raid6 it means parity count.
		Migrate to raid50 it means subArray Count.

Examples:
       migrate -l 1
       migrate -a start -l 1 -i 0 -p 3,4 -e 0,0 -s "raid=raid5"
       migrate -a start -l 0 -i 0 -s "raid=raidmf,count=1"
)";

inline constexpr char CLICMD_SHORT_MP[] = R"(Media Patrol Progress and Control
Usage: mp [-a <action>]
       mp -a start
       mp -a stop
       mp -a pause
       mp -a resume
)";

inline constexpr char CLICMD_HELP_MEDIAPATROL[] = R"(mp

Usage:
   mp -a <action> -p <pd ID> -i <ctrl ID>

Summary:
   Media patrol (MP) is a feature that will actively search the disks for
   media errors.  When an error is found, MP will attempt to repair the error.
   If MP fails to correct the error, MP will attempt to reassign the sector.
   **Note: Support for reassignement of sectors is not currently supported. 

   MP will allow the user to start, stop, pause, or resume a media patrol as
   well as to check on the progress and status.

Options:

-a <action>          Which action to perform.

   list              (Default) Display the status and progress of
                     media patrol.
   start             Start media patrol.
   stop              Stop media patrol.
   pause             Pause media patrol.
   resume            Resume a paused media patrol.

-p <pd ID>           physical drive ID.

-i <ctrl ID>         Controller ID. If it's not specified, it will be 0.

Examples:
   mp -a list -p 1 -i 0
   mp -a stop -p 1 -i 0
   mp -a resume -p 3 -i 1
)";

inline constexpr char CLICMD_SHORT_PHYDRV[] = R"(Physical Drive Information and Settings
Usage: phydrv [-a <action>] [-p <PdId>] [-c <Pd count>] [-v]
       phydrv -a mod [-p <PdId>] -s "<list of settings>" 
       phydrv -a locate -p <PdId>
       phydrv -a wipe -p <PdId> -i <ctrlId>
       phydrv -a set3G -m <drive model name> -f <firmware version> -e <flag>
       phydrv -a list3G -m <drive model name> -f <firmware version>
)";

inline constexpr char CLICMD_HELP_PHYDRIVE[] = R"(phydrv

Usage:
   phydrv [-a <action>] [-i <ctrlId>] [-p <PdId>] [-c <Pd count>] [-v]
   phydrv -a mod -p <PdId> -i <ctrlId> -s "<list of settings>"
   phydrv -a locate -p <PdId> -i <ctrlId> -d <duration>
   phydrv -a wipe -p <PdId> -i <ctrlId>
   phydrv -a set3G -p <PdId> -i <ctrlId> -e <flag>
   phydrv -a list3G -p <PdId> -i <ctrlId>

Summary:
   Allows the user to view and change settings and information regarding the
   physical drives in the HBA controller  The user can use this command to perform
   a locate on an individual drive.  

   **Note: Forcing a drive online should only be done in
   extreme conditions.  It will almost always cause data corruption.

Options:

-a <action>          Which action to perform.

   list              (Default) Displays all physical drives in the
                     enclosure, their make, and model number.
		             Their status is also shown.

   mod               Allows the user to make modifications to the physical
                     drive settings.

   locate            Allows the user to flash an LED for physically
                     identifying the location of the drive.

   wipe              Allows the user to clear a drive's reserved sector info.

   set3G             Enable or disable 3G option in data speed setting for
                     the specified disk model.

   list3G            Display the status if 3G option is enabled in data speed
                     setting for the specified disk model.

-p <PD ID>           Specifies the physical drive ID.

-i <ctrl ID>         Specifies the controller ID.

-d <duration>	     Specifies duration in second for blinking the drive. 
                     If it is zero, then it will stop to locate the drive. 

-c <PD count>        Used when more than one physical drive is to be specified
                     and their ID numbers are sequential. If it is undefined, it 
					 will be set to the maximum number of disk supported.
-m <disk model name> Disk model name 

-f <firmware version> Firmware version, if the disk drive doesn't have firmware
                      version, it can be omitted.


-e <flag> 	         It's either 0 or 1. 0 means disable the 3G option. 1 means
                     enable the 3G option.

-s "<option>=<value>"
                     Used to specifies which physical drive settings
                     to change.

   writecache=       Enables or disables the drive's write cache on the
                     specified drive.
      enable
      disable

   NCQ=              Enables or disables the drive's NCQ on the
      enable         specified drive.
      disable

   TCQ=              Enables or disables the drive's TCQ on the
      enable         specified drive.
      disable

 -v                  Verbose mode. Used with -a list.

Examples:
   phydrv
   phydrv -v
   phydrv -a locate -p 9 -i 0 -d 0
   phydrv -a mod -p 1 -i 0 -s "writecache=enable,TCQ=enable"
)";

inline constexpr char CLICMD_SHORT_RB[] = R"(Rebuild Progress and Control
Usage: rb [-a <action>] [-d <DaId>] [-s <SeqNo>]
       rb -a start -d <DaId> -s <SeqNo> -p <PdId> 
       rb -a pause -d <DaId> -s <SeqNo> 
       rb -a resume -d <DaId> -s <SeqNo> 
       rb -a restart -d <DaId> -s <SeqNo> 
)";

inline constexpr char CLICMD_HELP_REBUILD[] = R"(rb

Usage:
   rb [-a <action>] [-l <ldID>] [-i <ctrl ID>]
   rb -a start -l <ldID> -i <ctrl ID> -p "<PdIds>" -e "<extentIDs>"
   rb -a pause -l <ldID> -i <ctrl ID>
   rb -a resume -l <ldID> -i <ctrl ID>
   rb -a restart -l <ldID> -i <ctrl ID>

Summary:
   This command allows the user to start, pause or resume a Rebuild as
   well as to check on the progress of a running or paused Rebuild.

Options:

-a <action>          Which action to perform.

   list              (Default) Displays the current active or
                     paused rebuild(s)
                     and their status(es).
   start             Starts a manual rebuild.
   abort             Abort a manual rebuild.
   pause             Pauses a rebuild.
   resume            Resumes a paused rebuild.
   restart           Restarts a rebuild.

-l <ldID>            Specifies which logical drive to perform rebuild action on.

-i <ctrl ID>         Specifies on which controller to perform the rebuild

p <PD ID>            Identifies the physical drive ID that will be used in the
                     rebuild process.

-e <extent ID>       Identifies the extent ID that will be used in the
                     rebuild process.

Examples:
   rb
   rb -a start -l 2 -i 0 -p "3" -e "0"
   rb -a pause -l 0 -i 0
)";

inline constexpr char CLICMD_SHORT_RC[] = R"(Logical Drive Redundancy Check Progress and Control
Usage: rc [-a <action>] [-l <LdId>]
       rc -a start -l <LdId> [-n] [-p]
           -n: no fix. The default is auto-fix
           -p: pause on error. The default is to continue
       rc -a stop -l <LdId> 
       rc -a pause -l <LdId> 
       rc -a resume -l <LdId> 
)";

inline constexpr char CLICMD_HELP_REDUNDANCY_CHECK[] = R"(rc

Usage:
   rc [-a <action>] [-l <LdId>]
   rc -a start -l <LdId> -i <ctrl ID> [-n]
   rc -a stop -l <LdId> -i <ctrl ID>
   rc -a pause -l <LdId> -i <ctrl ID>
   rc -a resume -l <LdId> -i <ctrl ID>

Summary:
   This command allows the user to start, stop, pause or resume a Redundancy
   check as well as to check the progress of a running or paused Redundancy
   check.

-a <action>          Which action to perform.

   list              (Default) Displays current active or paused redundancy
                     check(s) and their status(es).
   start             Start a redundancy check.
   stop              Stop a redundancy check.
   pause             Pause a redundancy check.
   resume            Resume a paused redundancy check.

-l <Ld ID>           Specifies the logical drive ID on which to run redundancy
                     check.

-i <ctrl ID>         Specifies on which controller to perform the
                     initialization or quick initialization.

-n                   Do not fix inconsistent data.  Specifying this option
                     will cause redundancy check to run without correcting
                     inconsistent data.  All inconsistency errors found will
                     still be reported.


Examples:
   rc
   rc -a start -l 3 -i 1 -n
   rc -a start -l 3 -i 0
   rc -a stop -l 2 -i 0
)";

inline constexpr char CLICMD_SHORT_SYNC[] = R"(Logical Drive Synchronization Progress
Usage: sync [-a <action>] [-l <LdId>]
)";

inline constexpr char CLICMD_HELP_LDSYNCH[] = R"(sync

Usage:
   sync [-a <action>] [-l <LdId>] [-i <ctrl ID>]

Summary:
   Sync (background synchronization) will make a logical drive consistent.  
   It is an optional replacement for LDI (logical drive initialization).
   Background Synchronization will start automatically when a redundant
   logical drive is created while still allowing I/O to be performed to the
   logical drive (unlike LDI).

   If LDI is started then background synchronization will halt and LDI will
   run.

   This command may also be used to allow the user to check the status of
   background synchronization.

   Since background synchronization is started automatically and yields
   automatically there is no need to explicity start, stop, pause or resume a
   background synchronization.

Options:

-a <action>          Which action to perform.

 list                (Default) Displays the current syncs and their statuses.

-l <ld ID>           Specifies the logical drive ID on which background
                     sync is running.

-i <ctrl ID>         Specifies on which controller to perform the
                     initialization or quick initialization. Default is 0.

Examples:
   sync
   sync -l 3 -i 0
   sync -a list -l 3 **same as example above
)";
