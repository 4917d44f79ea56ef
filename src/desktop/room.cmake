# Every form is compiled by uic; forms.cpp maps them to their screens.
set(desktop ${CMAKE_CURRENT_SOURCE_DIR}/desktop)
file(GLOB forms CONFIGURE_DEPENDS ${desktop}/forms/*.ui)
qt_wrap_ui(form_headers ${forms})
qt_add_resources(look_source ${desktop}/look.qrc)
target_sources(ktl_desktop PRIVATE ${form_headers} ${look_source})
target_include_directories(ktl_desktop PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
ktl_precompile(ktl_desktop HEADERS <QApplication> <QComboBox> <QKeyEvent> <QLineEdit> <QPushButton> <QTableView> <QTimer>
                                   <QWidget>)

# The tool that takes the pictures of the user's guide; not built by default.
add_executable(ktl_pictures EXCLUDE_FROM_ALL ${CMAKE_SOURCE_DIR}/docs/pictures.cpp)
target_link_libraries(ktl_pictures PRIVATE ktl_desktop ktl_console)
set_target_properties(ktl_pictures PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
