# Configures and builds everything but the front end with every way to Qt closed.
execute_process(
  COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BINARY} -G ${GENERATOR} -DVEK_UI=OFF -DVEK_TESTS=OFF
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BINARY} COMMAND_ERROR_IS_FATAL ANY)
