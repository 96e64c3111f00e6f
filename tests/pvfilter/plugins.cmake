include(${CMAKE_CURRENT_LIST_DIR}/commands.cmake)

# The example server with the example plug-ins, as docs/example-server.md installs them.
run(new server)
file(COPY ${PLUGINS}/ DESTINATION ${WORK}/server/app)

# The EICAR test text must not stand here as it is.
set(eicar "X5O!P%@AP[4\\PZX54(P^)7CC)7}$")
string(APPEND eicar "EICAR-STANDARD-ANTI" "VIRUS-TEST-FILE!$H+H*")
file(WRITE ${WORK}/infected.eml "Subject: a\r\n\r\n${eicar}\r\n")
file(WRITE ${WORK}/junk.eml "Subject: your jackpot\r\n\r\nThe casino lottery: you are a winner.\r\n")

run(run --server server --json infected.eml junk.eml)
string(JSON virus LENGTH "${out}" 0 fired)
string(JSON junk LENGTH "${out}" 1 fired)
expect("nothing is found while the scanners are off" status EQUAL 0 AND virus EQUAL 1 AND junk EQUAL 1)

run(settings --server server set "Antivirus Status" 1)
run(settings --server server set "Bayesian Filtering Status" 1)
run(run --server server --json infected.eml junk.eml ${SAMPLES}/plain.eml)
field(criterion 0 fired 1 criterion)
field(fate 0 message)
field(copy 0 new_files 1)
expect("a virus is deleted, with a copy in quarantine" criterion STREQUAL "HASVIRUS" AND fate STREQUAL "deleted" AND
       copy MATCHES "^quarantine/Messages/")
field(matched 1 fired 1 matched)
field(file 1 message_file)
file(READ ${WORK}/server/${file} message)
expect("junk is marked" matched MATCHES "^<BFV>99\\.[0-9]+</BFV><BFT>90\\.000000</BFT>$" AND
       message MATCHES "X-Spam-Probability: 99\\.[0-9]+ percent, more than 90\\.000000")
string(JSON fired LENGTH "${out}" 2 fired)
expect("other mail is not" fired EQUAL 1)
