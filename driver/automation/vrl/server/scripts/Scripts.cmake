# The registration scripts, each a resource of type REGISTRY that has its class's name. They are Class.rgs.in with the
# names of this table; what differs in more than names is a file of its own.
set(class_scripts
  # class                      registered name            ProgID                versioned ProgID, both without "Vorlane."
  "VRL                         VRL                        VRL                   VRL.1"
  "PrintServer                 PrintServer                PrintServer           PrintServer.1"
  "Printer                     Printer                    Printer               Printer.1"
  "PrinterStatus               PrinterStatus              PrinterStatus         PrinterStatus.1"
  "Printers                    Printers                   Printers              Printers.1"
  "PrintersFilter              PrintersFilter             PrintersFilter        PrintersFilter.1"
  "PrintQueue                  PrinterQueue               PrinterQueue          PrinterQueue.1"
  "PrintJob                    Job                        Job                   Job.1"
  "PrintJobStatus              JobStatus                  JobStatus             JobStatus.1"
  "PrintJobs                   Jobs                       Jobs                  Jobs.1"
  "PrintJobsFilter             JobsFilter                 JobsFilter            JobsFilter.1"
  # Deliberate: these two share the versioned ProgID; the class registered last has it.
  "PrinterConfiguration        PrinterConfiguration       PrinterConfiguration  PrinterConfiguratio.1"
  "PrinterConfigurationFilter  PrinterConfigurationFilter PrinterConfigurationF PrinterConfiguratio.1"
  "QueryCommand                QueryCommand               QueryCommand          QueryCommand.1"
  "QueryResponse               QueryResponse              QueryResponse         QueryResponse.1"
  "PrinterPort                 PrinterPort                PrinterPort           PrinterPort.1"
  "PrinterCapabilities         PrinterCapabilities        PrinterCapabili       PrinterCapabi.1")

# The module's own, and a class that is registered under another class identifier.
set(own_scripts Vorlane PrintJobSchedule)

# vorlane_registration_scripts(FOLDER files): makes all scripts in FOLDER/scripts, and FOLDER/Scripts.rc that names them;
# sets `files` to what that reads.
function(vorlane_registration_scripts folder files)
  foreach(row IN LISTS class_scripts)
    string(REGEX MATCHALL "[^ ]+" columns ${row})
    list(POP_FRONT columns class NAME PROGID VERSIONED_PROGID)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Class.rgs.in ${folder}/scripts/${class}.rgs @ONLY)
    list(APPEND scripts ${class})
  endforeach()
  foreach(script IN LISTS own_scripts)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${script}.rgs ${folder}/scripts/${script}.rgs COPYONLY)
    list(APPEND scripts ${script})
  endforeach()

  list(TRANSFORM scripts REPLACE "(.+)" "\\1 REGISTRY \"vrl/scripts/\\1.rgs\"\n" OUTPUT_VARIABLE lines)
  list(JOIN lines "" lines)
  file(CONFIGURE OUTPUT ${folder}/Scripts.rc CONTENT "${lines}")
  list(TRANSFORM scripts REPLACE "(.+)" "${folder}/scripts/\\1.rgs")
  set(${files} ${scripts} PARENT_SCOPE)
endfunction()
