include(${CMAKE_CURRENT_LIST_DIR}/commands.cmake)

set(key "HKCU\\Software\\Post Vane pvfilter test\\Trial")
function(forget_key)
  execute_process(COMMAND ${EMULATOR} reg delete "HKCU\\Software\\Post Vane pvfilter test" /f
                  OUTPUT_FILE ${WORK}/reg.txt ERROR_FILE ${WORK}/reg.txt)
endfunction()
forget_key()  # of a test that failed

run(settings --registry ${key} list)
expect("a key that is not there" status EQUAL 66 AND err MATCHES "Trial: cannot be read")
run(new --registry ${key} server)
expect("new puts the settings into the key" status EQUAL 0 AND out MATCHES "--registry \"HKCU" AND
       NOT EXISTS ${WORK}/server/settings.reg AND EXISTS ${WORK}/server/conf/FILTERS/FILTER.TAB)
run(new --registry ${key} other)
expect("new keeps its hands off a key in use" status EQUAL 73 AND err MATCHES "Trial: is there already" AND
       NOT EXISTS ${WORK}/other)

run(settings --registry ${key} set Reload 1)
expect("set" status EQUAL 0)
run(settings --registry ${key} list)
expect("list" status EQUAL 0 AND out MATCHES "MTAFILTER.\n(.+\n)*Reload = 1\n" AND out MATCHES "Mail Root = .:")
run(run --registry ${key} --json ${SAMPLES}/phrase.eml)
field(matched 0 fired 1 matched)
field(fate 0 message)
expect("the agent filters by the key" status EQUAL 0 AND matched STREQUAL "<MF-W>you have won</MF-W>" AND
       fate STREQUAL "changed")
run(settings --registry ${key} get reload)
expect("the agent took the request" out STREQUAL "0\n")
run(settings --registry ${key} get "Bad Mail Directory")
expect("get a text" status EQUAL 0 AND out MATCHES "badmail\n$")
forget_key()
