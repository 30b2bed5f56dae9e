# The ribbon's icons: each drawing is rendered at build time in four sizes and embedded as PNG.
# Sets QV_ICON_FILES (the rendered files) and QV_ICON_RESOURCES (their lines of the resource script).

set(QV_ICON_SIZES 32 48 64 96)

set(icon_table
  # icon  drawing             resource at 32, 48, 64, 96 px
  "110  translate_sheet      120  130  140  150"
  "111  translate_selection  121  131  141  151"
  "112  quick_translate      122  132  142  152"
  "113  ai_autofill          123  133  143  153"
  "114  ai_chat              124  134  144  154"
  "115  glossary             125  135  145  155"
  "116  instruction          126  136  146  156"
  "117  account              127  137  147  157"
  "118  coding_agent         128  138  148  158"
  "119  image_translate      159  161  163  165"
  "129  support              160  162  164  166"
  "167  grammar              168  169  170  171"
  "172  image_to_table       173  174  175  176"
  "177  pdf_to_table         178  179  180  181"
  "182  delete_blank_rows    183  184  185  186"
  "187  document_check       188  189  190  191"
  "192  pdf_translate        193  194  195  196"
  "197  settings             198  199  200  201"
)

find_program(QV_RSVG_CONVERT rsvg-convert NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(icon_script ${CMAKE_SOURCE_DIR}/scripts/render_icons.sh)
set(icon_dir ${CMAKE_CURRENT_BINARY_DIR}/icons)

set(QV_ICON_FILES)
set(QV_ICON_RESOURCES)
foreach(row IN LISTS icon_table)
  separate_arguments(cells UNIX_COMMAND "${row}")
  list(GET cells 1 drawing)
  list(SUBLIST cells 2 4 resources)
  set(rendered)
  foreach(resource size IN ZIP_LISTS resources QV_ICON_SIZES)
    list(APPEND rendered ${icon_dir}/${drawing}_${size}.png)
    string(APPEND QV_ICON_RESOURCES "${resource} RCDATA \"icons/${drawing}_${size}.png\"\n")
  endforeach()
  set(svg ${CMAKE_CURRENT_LIST_DIR}/${drawing}.svg)
  add_custom_command(OUTPUT ${rendered}
    COMMAND ${icon_script} ${icon_dir} ${svg}
    DEPENDS ${svg} ${CMAKE_CURRENT_LIST_DIR}/palette.css ${icon_script}
    COMMENT "Rendering ${drawing}"
    VERBATIM)
  list(APPEND QV_ICON_FILES ${rendered})
endforeach()
