include(${CMAKE_CURRENT_LIST_DIR}/commands.cmake)

run(--version)
expect("version" status EQUAL 0 AND out MATCHES "^pvfilter [0-9.]+\n$")
foreach(command new run settings)
  run(${command} --help)
  expect("${command} has help" status EQUAL 0 AND out MATCHES "Usage: pvfilter ${command}")
endforeach()
foreach(arguments "" "nonsense" "run" "run;--server;x;--nonsense;y" "settings;--server;x")
  run(${arguments})
  expect("usage error: ${arguments}" status EQUAL 64 AND err MATCHES "^pvfilter: ")
endforeach()

# A system without registry, or a name that is no key of one.
foreach(command "new;server" "settings;list")
  list(GET command 0 name)
  list(GET command 1 argument)
  run(${name} --registry "HKEY_NOWHERE\\Software\\Trial" ${argument})
  expect("no such registry: ${name}" status EQUAL 64 AND err MATCHES "only on Windows" AND NOT EXISTS ${WORK}/server)
endforeach()

run(new server)
run(run --server server --agent nowhere.so ${SAMPLES}/plain.eml)
expect("no agent library" status EQUAL 69 AND err MATCHES "^pvfilter: nowhere.so: ")
