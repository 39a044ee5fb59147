# Turns the spectral reference CSVs into a C++ source of constant float arrays,
# declared in QZESpectralTables.h, so the library reads no file at run time.
#
# Included, it provides
#   qtcolor_generate_spectral_tables(<out_var> <data_dir>)
# which adds the build step and sets <out_var> to the generated source. The
# step reruns this file as a script whenever a CSV or this file changes:
#   cmake -DDATA_DIR=<dir> -DOUTPUT=<file.cpp> -P GenerateSpectralTables.cmake
#
# Each CSV has one header line and data rows only. Every column becomes one
# array, named in the same order as the columns; the values keep their digits.

set(QTCOLOR_SPECTRAL_TABLES cie1931 cie2006 illuminants daylight smits)

set(QTCOLOR_SPECTRAL_cie1931_FILE cie1931_cmf_1nm.csv)
set(QTCOLOR_SPECTRAL_cie1931_ROWS 471)
set(QTCOLOR_SPECTRAL_cie1931_COLUMNS lambda x y z)
set(QTCOLOR_SPECTRAL_cie1931_ARRAYS
  CIE1931cmf_lambda CIE1931cmf_X CIE1931cmf_Y CIE1931cmf_Z)

set(QTCOLOR_SPECTRAL_cie2006_FILE cie2006_2deg_xyz_cmf_1nm.csv)
set(QTCOLOR_SPECTRAL_cie2006_ROWS 441)
set(QTCOLOR_SPECTRAL_cie2006_COLUMNS lambda x y z)
set(QTCOLOR_SPECTRAL_cie2006_ARRAYS
  CIE2006cmf_lambda CIE2006cmf_X CIE2006cmf_Y CIE2006cmf_Z)

set(QTCOLOR_SPECTRAL_illuminants_FILE cie_illuminants_A_D65_E_5nm.csv)
set(QTCOLOR_SPECTRAL_illuminants_ROWS 107)
set(QTCOLOR_SPECTRAL_illuminants_COLUMNS lambda A D65 E)
set(QTCOLOR_SPECTRAL_illuminants_ARRAYS
  CIEilluminant_lambda CIEilluminant_A CIEilluminant_D65 CIEilluminant_E)

set(QTCOLOR_SPECTRAL_daylight_FILE cie_daylight_components.csv)
set(QTCOLOR_SPECTRAL_daylight_ROWS 107)
set(QTCOLOR_SPECTRAL_daylight_COLUMNS lambda S0 S1 S2)
set(QTCOLOR_SPECTRAL_daylight_ARRAYS
  CIEdaylight_lambda CIEdaylight_S0 CIEdaylight_S1 CIEdaylight_S2)

set(QTCOLOR_SPECTRAL_smits_FILE smits_rgb_to_spectrum_32.csv)
set(QTCOLOR_SPECTRAL_smits_ROWS 32)
set(QTCOLOR_SPECTRAL_smits_COLUMNS lambda
  refl_white refl_cyan refl_magenta refl_yellow refl_red refl_green refl_blue
  illum_white illum_cyan illum_magenta illum_yellow illum_red illum_green illum_blue)
set(QTCOLOR_SPECTRAL_smits_ARRAYS RGB2Spec_lambda
  RGB2ReflSpec_White RGB2ReflSpec_Cyan RGB2ReflSpec_Magenta RGB2ReflSpec_Yellow
  RGB2ReflSpec_Red RGB2ReflSpec_Green RGB2ReflSpec_Blue
  RGB2IlluSpec_White RGB2IlluSpec_Cyan RGB2IlluSpec_Magenta RGB2IlluSpec_Yellow
  RGB2IlluSpec_Red RGB2IlluSpec_Green RGB2IlluSpec_Blue)

function(qtcolor_generate_spectral_tables out_var data_dir)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/QZESpectralTables.cpp)
  set(csv_files)
  foreach(table IN LISTS QTCOLOR_SPECTRAL_TABLES)
    list(APPEND csv_files ${data_dir}/${QTCOLOR_SPECTRAL_${table}_FILE})
  endforeach()
  add_custom_command(
    OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DDATA_DIR=${data_dir} -DOUTPUT=${output}
            -P ${CMAKE_CURRENT_FUNCTION_LIST_FILE}
    DEPENDS ${csv_files} ${CMAKE_CURRENT_FUNCTION_LIST_FILE}
    COMMENT "Generating spectral reference tables from ${data_dir}"
    VERBATIM)
  # Plain data: nothing for moc to look at.
  set_source_files_properties(${output} PROPERTIES SKIP_AUTOGEN ON)
  set(${out_var} ${output} PARENT_SCOPE)
endfunction()

function(_qtcolor_spectral_fail file line message)
  message(FATAL_ERROR "Spectral tables: ${file}, line ${line}: ${message}")
endfunction()

# A CSV number as a float literal with the same digits: "100" -> "100.0f".
function(_qtcolor_spectral_literal cell file line out_var)
  if(NOT cell MATCHES "^[-+]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][-+]?[0-9]+)?$")
    _qtcolor_spectral_fail(${file} ${line} "\"${cell}\" is not a number")
  endif()
  if(NOT cell MATCHES "[.eE]")
    string(APPEND cell ".0")
  endif()
  set(${out_var} "${cell}f" PARENT_SCOPE)
endfunction()

# Sets <out_var> to one array definition per column of the table's CSV.
function(_qtcolor_spectral_arrays table out_var)
  set(file ${QTCOLOR_SPECTRAL_${table}_FILE})
  set(columns ${QTCOLOR_SPECTRAL_${table}_COLUMNS})
  set(arrays ${QTCOLOR_SPECTRAL_${table}_ARRAYS})
  set(expected_rows ${QTCOLOR_SPECTRAL_${table}_ROWS})
  set(path ${DATA_DIR}/${file})
  if(NOT EXISTS ${path})
    message(FATAL_ERROR "Spectral tables: ${path} does not exist")
  endif()

  file(STRINGS ${path} lines)
  list(POP_FRONT lines header)
  string(STRIP "${header}" header)
  string(REPLACE "," ";" header_cells "${header}")
  if(NOT header_cells STREQUAL columns)
    string(REPLACE ";" "," expected_header "${columns}")
    _qtcolor_spectral_fail(${file} 1
      "header is \"${header}\", expected \"${expected_header}\"")
  endif()
  list(LENGTH lines rows)
  if(NOT rows EQUAL expected_rows)
    message(FATAL_ERROR
      "Spectral tables: ${file} has ${rows} data rows, expected ${expected_rows}")
  endif()

  list(LENGTH columns column_count)
  math(EXPR last_column "${column_count} - 1")
  set(line 1)
  foreach(row IN LISTS lines)
    math(EXPR line "${line} + 1")
    string(STRIP "${row}" row)
    string(REPLACE "," ";" cells "${row}")
    list(LENGTH cells cell_count)
    if(NOT cell_count EQUAL column_count)
      _qtcolor_spectral_fail(${file} ${line}
        "${cell_count} values, expected ${column_count}")
    endif()
    foreach(column RANGE ${last_column})
      list(GET cells ${column} cell)
      _qtcolor_spectral_literal("${cell}" ${file} ${line} literal)
      list(APPEND values_${column} ${literal})
    endforeach()
  endforeach()

  set(code "\n// ${file}\n")
  foreach(column RANGE ${last_column})
    list(GET arrays ${column} name)
    list(JOIN values_${column} ",\n    " body)
    string(APPEND code "const float ${name}[${rows}] = {\n    ${body}\n};\n")
  endforeach()
  set(${out_var} "${code}" PARENT_SCOPE)
endfunction()

function(_qtcolor_spectral_write_source)
  if(NOT DATA_DIR OR NOT OUTPUT)
    message(FATAL_ERROR "Spectral tables: pass -DDATA_DIR=<csv folder> -DOUTPUT=<source>")
  endif()
  set(code "// Generated at build time from the CSV files in ${DATA_DIR}.\n")
  string(APPEND code "// Do not edit: change the CSVs instead.\n\n")
  string(APPEND code "#include \"QZESpectralTables.h\"\n")
  foreach(table IN LISTS QTCOLOR_SPECTRAL_TABLES)
    _qtcolor_spectral_arrays(${table} arrays)
    string(APPEND code "${arrays}")
  endforeach()
  file(WRITE ${OUTPUT} "${code}")
endfunction()

if(CMAKE_SCRIPT_MODE_FILE)
  _qtcolor_spectral_write_source()
endif()
