# Fails the build where a folder includes from a folder above it, or where a portable file
# includes a Windows header. Run as: cmake -DROOT=<source dir> -P check_floors.cmake

cmake_minimum_required(VERSION 3.25)

set(floor_platform "platform")
set(floor_document "document;platform")
set(floor_pattern "pattern;platform")
set(floor_encoding "encoding;document;platform")
set(floor_settings "settings;encoding;platform")
set(floor_hexview "hexview;document;encoding;pattern;settings;platform")
set(floor_panes "panes;document;encoding;pattern;settings;platform")
set(floor_app "app;panes;hexview;document;encoding;pattern;settings;platform")
set(folders platform document pattern encoding settings hexview panes app)

set(windows_headers "windows|windowsx|commctrl|commdlg|shellapi|shlobj|shlobj_core|d2d1|dwrite|winuser|winbase|fileapi")
set(problems 0)

foreach(folder IN LISTS folders)
  file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp)
  foreach(file IN LISTS files)
    file(STRINGS ${ROOT}/${file} includes REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS includes)
      if(line MATCHES "\"([a-z]+)/[^\"]*\"")
        set(target ${CMAKE_MATCH_1})
        if(target IN_LIST folders AND NOT target IN_LIST floor_${folder})
          message("${file}: ${folder}/ may not include ${target}/: ${line}")
          math(EXPR problems "${problems} + 1")
        endif()
      endif()
      if(line MATCHES "\"\\.\\./")
        message("${file}: include by the path from the root: ${line}")
        math(EXPR problems "${problems} + 1")
      endif()
      if(line MATCHES "<(${windows_headers})\\.h>"
         AND NOT file MATCHES "(_window|_dialog|_renderer)\\.(h|cpp)$"
         AND NOT file MATCHES "^platform/win32/" AND NOT file STREQUAL "app/main.cpp")
        message("${file}: a portable file includes a Windows header: ${line}")
        math(EXPR problems "${problems} + 1")
      endif()
    endforeach()
  endforeach()
endforeach()

if(problems)
  message(FATAL_ERROR "${problems} includes break the floors (see CONTRIBUTING.md)")
endif()
