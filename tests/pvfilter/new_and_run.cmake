include(${CMAKE_CURRENT_LIST_DIR}/commands.cmake)

run(new server)
expect("new makes a tree" status EQUAL 0 AND EXISTS ${WORK}/server/settings.reg)
run(new server)
expect("new keeps its hands off a directory in use" status EQUAL 73 AND err MATCHES "^pvfilter: .*server: is there already")

# Each sample, by what the example filters are for.
run(run --server server --json ${SAMPLES}/plain.eml ${SAMPLES}/phrase.eml ${SAMPLES}/executable.eml ${SAMPLES}/blocked.eml
    ${SAMPLES}/invoice.eml)
expect("run answers 0" status EQUAL 0)
string(JSON count LENGTH "${out}")
expect("an object a message" count EQUAL 5)

field(fate 0 message)
field(filter 0 fired 0 display_name)
string(JSON fired LENGTH "${out}" 0 fired)
expect("plain: only the header mark" fired EQUAL 1 AND filter STREQUAL "Header mark" AND fate STREQUAL "changed")

field(criterion 1 fired 1 criterion)
field(matched 1 fired 1 matched)
field(first 1 fired 1 actions 0)
field(second 1 fired 1 actions 1)
expect("phrase: the last phrase of the body" criterion STREQUAL "BODY" AND matched STREQUAL "<MF-W>you have won</MF-W>")
expect("phrase: both actions" first STREQUAL "ADD_SUBJECT_PREFIX" AND second STREQUAL "ADD_HEADER")
field(file 1 message_file)
file(READ ${WORK}/server/${file} message)
expect("phrase: the file was changed" message MATCHES "Subject: \\[SPAM\\?\\] Only today\r?\n" AND
       message MATCHES "X-Phrases: you have won")

field(copy 2 new_files 1)
field(before 2 bytes_before)
field(after 2 bytes_after)
expect("executable: a copy in quarantine" copy MATCHES "^quarantine/Messages/" AND EXISTS ${WORK}/server/${copy})
expect("executable: marked" after GREATER before)
field(recipients 2 new_messages 0 recipients)
field(forwarded 2 new_messages 0 message_file)
file(READ ${WORK}/server/${forwarded} message)
expect("executable: a marked copy is forwarded" recipients STREQUAL "[SMTP:security@example.org]" AND
       message MATCHES "\r?\nX-PVFilter: 1\r?\n" AND message MATCHES "filename=")

field(fate 3 message)
field(copy 3 new_files 1)
field(file 3 message_file)
expect("blocked: deleted, with a copy in bad mail" fate STREQUAL "deleted" AND copy MATCHES "^badmail/Messages/")
expect("blocked: gone" NOT EXISTS ${WORK}/server/${file})
field(recipients 3 new_messages 0 recipients)
field(notification 3 new_messages 0 message_file)
file(READ ${WORK}/server/${notification} message)
expect("blocked: a notification from the template" recipients STREQUAL "[SMTP:postmaster@example.org]" AND
       message MATCHES "Subject: Not delivered: \\*\\.[a-z]+ from sender@example.com\r?\n" AND
       message MATCHES "\nX-PVFilter: 1\r?\n\r?\n" AND message MATCHES "Its headers:\r?\n\r?\nFrom: ")

field(recipients 4 recipients)
expect("invoice: one more recipient" recipients MATCHES "^\\[SMTP:recipient@example.org\\].\\[SMTP:accounts@example.org\\]$")
run(run --server server ${SAMPLES}/invoice.eml ${SAMPLES}/blocked.eml)
expect("recipients and new messages are shown" out MATCHES "now for  \\[SMTP:recipient@example.org\\].\\[SMTP:accounts@example.org\\]\n" AND
       out MATCHES "queued   for \\[SMTP:postmaster@example.org\\]: queues/SMTP/Inbound/Messages/")

run(run --server server --json --connector LS ${SAMPLES}/plain.eml)
field(annotated 0 changed_files 0)
file(READ ${WORK}/server/${annotated} message)
expect("local: what is delivered into mailboxes is annotated" annotated MATCHES "^queues/LS/Outgoing/Messages/" AND
       message MATCHES "X-PVFilter: 1\r?\n" AND message MATCHES "Checked by the mail filter of example.org")

string(REPEAT "A line of text that is neither short nor long.\n" 25000 body)
file(WRITE ${WORK}/large.eml "Subject: large\n\n${body}")
run(run --server server --json large.eml)
field(id 0 message_id)
field(output 0 output)
expect("large: a program is run for it" output MATCHES "Filter Event Command:echo SMTP ${id} is large\r?\n")
if(NOT EMULATOR)
  field(action 0 fired 1 actions 1)
  expect("large: the program was started" action STREQUAL "EXECUTE_APPLICATION" AND output MATCHES "\nSMTP ${id} is large\n")
endif()

run(run --server server --ip 192.0.2.10 ${SAMPLES}/blocked.eml)
expect("an internal sender stops the filters" status EQUAL 0 AND out MATCHES "Internal senders" AND
       out MATCHES "STOP_PROCESSING" AND out MATCHES "message  kept" AND NOT out MATCHES "Header mark")

# A message of bare line feeds arrives as mail does; --raw keeps its bytes.
file(WRITE ${WORK}/lf.eml "Subject: a\n\nbody\n")
run(run --server server --json lf.eml)
field(size 0 bytes_before)
expect("line feeds become CR LF" size EQUAL 20)
run(run --server server --json --raw lf.eml)
field(size 0 bytes_before)
expect("unless raw" size EQUAL 17)

file(WRITE ${WORK}/marked.eml "X-PVFilter: 1\r\nSubject: you have won\r\n\r\nbody\r\n")
run(run --server server marked.eml)
expect("a marked message is left alone" out MATCHES "no filter was applied" AND out MATCHES "message  kept")

run(run --server server missing.eml ${SAMPLES}/plain.eml)
expect("a missing file does not stop the others" status EQUAL 66 AND err MATCHES "^pvfilter: missing.eml: " AND
       out MATCHES "plain.eml")

# A template's path is printed without a line end.
file(APPEND ${WORK}/server/conf/FILTERS/ACTIONS/phrases.TAB "1\t\tBlocked\tNOTIFY_SENDER\t\t\n")
run(run --server server --json ${SAMPLES}/phrase.eml)
field(applied 0 filters_applied)
field(recipients 0 new_messages 0 recipients)
expect("a notification at the very end" applied AND recipients STREQUAL "[SMTP:sender@example.com]")

# Reports on standard output instead of the log, and no reports at all.
run(settings --server server set "Activity Log Enabled" 2)
run(run --server server --json ${SAMPLES}/phrase.eml)
field(criterion 0 fired 1 criterion)
expect("reports on standard output are read too" criterion STREQUAL "BODY")
run(settings --server server set "Activity Log Enabled" 0)
run(run --server server ${SAMPLES}/phrase.eml)
expect("without reports it says so" out MATCHES "fired    Phrases: criterion and actions are not reported")

# An action that fails is named, and so is one that is not available.
run(settings --server server set "Activity Log Enabled" 1)
run(settings --server server set "Quarantine Directory" ${WORK}/nowhere)
file(APPEND ${WORK}/server/conf/FILTERS/ACTIONS/executables.TAB "1\t\t\tNO_SUCH_ACTION\t\t\n")
run(run --server server --json ${SAMPLES}/executable.eml)
field(failed 0 fired 1 not_done 0)
field(unknown 0 fired 1 not_done 1)
field(done 0 fired 1 actions 0)
expect("what was not done is shown" failed STREQUAL "COPY_TO_QUARANTINE" AND unknown STREQUAL "NO_SUCH_ACTION" AND
       done STREQUAL "FORWARD_TO_ADDRESS")
