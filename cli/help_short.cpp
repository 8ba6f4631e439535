// The short help texts, one for each command, printed exactly as they stand here, slips and blanks
// at line ends included.
#include "cli/help_texts.h"

// clang-format off

const char CLICMD_SHORT_BATTERY[] = R"(Battery Information and Settings 
Usage: battery [-a <action>] [-b <batId>]
       battery -a recondition -b <batId>
)";

const char CLICMD_SHORT_BGA[] = R"(Background Activity Status and Settings
Usage: bga [-a <action>]
)";

const char CLICMD_SHORT_BUZZ[] = R"(Buzzer Status and Control
Usage:
   buzz [-a <action>] [-i <CtrlId>] [-c <Count>]
   buzz -a list [-i <CtrlId>] [-c <Count>]
   buzz -a enable [-i <CtrlId>]
   buzz -a disable [-i <CtrlId>]
   buzz -a on [-i <CtrlId>]
   buzz -a off [-i <CtrlId>]
)";

const char CLICMD_SHORT_CTRL[] = R"(Controller Informaiton and Settings
Usage: ctrl [-a <action>] [-i <ctrlId>] [-c <ctrl count>] [-v]
       ctrl -a mod [-t <Type>] -i <ctrlId> -s "<list of settings>"
         -t <Type>: raid 
)";

const char CLICMD_SHORT_ENCLOSURE[] = R"(Enclosure Information and Settings
Usage: enclosure [-a <action>] [-e <enclId>] -v 
       enclosure -a mod -e <enclId> -s <list of settings>
       enclosure -a locate -e <encl id> [-t <FRU type>] [-f <FRU id>]
)";

const char CLICMD_SHORT_EVENT[] = R"(Event Information and Settings
Usage: event [-a <action>] [-l <location>] [-i <SeqNo>] [-c <event count>]
             [-v]
       event -a clear [-l <location>]
         -l <location>: ram(default)|nvram
)";

const char CLICMD_SHORT_EXIT[] = R"(Exit the CLI
Usage: exit
)";

const char CLICMD_SHORT_EXPORT[] = R"(Export the setting of controllers, physical drives and logical drives to a configuration file
Usage: export -t <DataType list> -f <fileName>
)";

const char CLICMD_SHORT_EXTENT[] = R"(Event Information and Settings
Usage: extent [-a <action>] [-i <ctrlId>] [-p <PdId>] [-c <Pd count>] [-v]
       extent -a spare -p <PdId> -e <ext ID> -i <ctrlId> [-l <ld ID>]
       extent -a free -p <PdId> -e <ext ID> -i <ctrlId>
       extent -a add -p <PdId> -e <ext ID> -i <ctrlId>> -l <ld ID>
       extent -a split -p <PdId> -e <ext ID> -i <ctrlId>> -o <split offset in MB>
       extent -a delete -p <PdId> -e <ext ID> -i <ctrlId>>
)";

const char CLICMD_SHORT_HELP[] = R"(CLI Help
Usage: help         display all the valid commands
       help <cmd>   display the usage of the specified command

Summary:
   Displays the main help window.  
)";

const char CLICMD_SHORT_IMPORT[] = R"(Apply and list the setting of the configuration file to the system
Usage: import [-k <Ctrl Index list>] [-p <PD Index list>] [-l <LD Index list>] 
       [-a] -f <fileName> [-c] [-i]
)";

const char CLICMD_SHORT_INIT[] = R"(Logical Drive Initialization Progress and Control
Usage: init [-a <action>] [-l <LdId>]
       init -a start -l <LdId> [-q <size>] [-p <pattern>]
       init -a pause -l <LdId> 
       init -a resume -l <LdId> 
)";

const char CLICMD_SHORT_LOGDRV[] = R"(Logical Drive Information and Settings
Usage: logdrv [-a <action>] [-l <LdId>] [-c <Ld count>] [-v]
       logdrv -a locate -l <LdID>
       logdrv -a mod -l <LdId> -s "<list of ld settings>" 
       logdrv -a add -i <ctrl ID> -p "<pdId list>" [-e <extId list>] -z "<list of create ld settings>"
       logdrv -a del -l <LdId> -i <ctrl ID>
)";

const char CLICMD_SHORT_MIGRATE[] = R"(Disk Array Migration
Usage: migrate [-a <action>] [-d <DaId>]
       migrate -a start -d <DaId> -p <PdIds> -l <LdSettings>
)";

const char CLICMD_SHORT_MP[] = R"(Media Patrol Progress and Control
Usage: mp [-a <action>]
       mp -a start
       mp -a stop
       mp -a pause
       mp -a resume
)";

const char CLICMD_SHORT_PHYDRV[] = R"(Physical Drive Information and Settings
Usage: phydrv [-a <action>] [-p <PdId>] [-c <Pd count>] [-v]
       phydrv -a mod [-p <PdId>] -s "<list of settings>" 
       phydrv -a locate -p <PdId>
       phydrv -a wipe -p <PdId> -i <ctrlId>
       phydrv -a set3G -m <drive model name> -f <firmware version> -e <flag>
       phydrv -a list3G -m <drive model name> -f <firmware version>
)";

const char CLICMD_SHORT_RB[] = R"(Rebuild Progress and Control
Usage: rb [-a <action>] [-d <DaId>] [-s <SeqNo>]
       rb -a start -d <DaId> -s <SeqNo> -p <PdId> 
       rb -a pause -d <DaId> -s <SeqNo> 
       rb -a resume -d <DaId> -s <SeqNo> 
       rb -a restart -d <DaId> -s <SeqNo> 
)";

const char CLICMD_SHORT_RC[] = R"(Logical Drive Redundancy Check Progress and Control
Usage: rc [-a <action>] [-l <LdId>]
       rc -a start -l <LdId> [-n] [-p]
           -n: no fix. The default is auto-fix
           -p: pause on error. The default is to continue
       rc -a stop -l <LdId> 
       rc -a pause -l <LdId> 
       rc -a resume -l <LdId> 
)";

const char CLICMD_SHORT_SYNC[] = R"(Logical Drive Synchronization Progress
Usage: sync [-a <action>] [-l <LdId>]
)";
