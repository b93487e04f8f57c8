# The HTML report is one self-contained page: the uPlot charting library (from npm, pinned by
# web/package-lock.json) and the page's own script and style become constant text inside
# brinecast_cli, so a page opened offline draws its plots.
set(BRINECAST_WEB_DIR ${PROJECT_SOURCE_DIR}/web)
find_program(BRINECAST_NPM npm)
if(NOT BRINECAST_NPM)
  message(FATAL_ERROR
    "npm was not found: the HTML report inlines the uPlot charting library that npm installs "
    "from web/package-lock.json. Install Node.js and npm (scripts/install-deps.sh does, as root), "
    "or point -DBRINECAST_NPM=/path/to/npm at one.")
endif()

set(BRINECAST_UPLOT_DIR ${BRINECAST_WEB_DIR}/node_modules/uplot)
set(BRINECAST_NPM_OUTPUTS
  ${BRINECAST_UPLOT_DIR}/dist/uPlot.iife.min.js
  ${BRINECAST_UPLOT_DIR}/dist/uPlot.min.css
  ${BRINECAST_UPLOT_DIR}/LICENSE
  ${BRINECAST_WEB_DIR}/node_modules/playwright-core/package.json)
# `npm ci` installs exactly what the lock file holds, whenever node_modules is missing or older
# than the lock file. npm may keep the packages' own file times, so the outputs are touched.
add_custom_command(
  OUTPUT ${BRINECAST_NPM_OUTPUTS}
  COMMAND ${BRINECAST_NPM} ci --ignore-scripts --no-audit --no-fund --loglevel=error
  COMMAND ${CMAKE_COMMAND} -E touch ${BRINECAST_NPM_OUTPUTS}
  DEPENDS ${BRINECAST_WEB_DIR}/package.json ${BRINECAST_WEB_DIR}/package-lock.json
  WORKING_DIRECTORY ${BRINECAST_WEB_DIR}
  COMMENT "Installing the report's npm packages from web/package-lock.json"
  VERBATIM)
# One target owns the install; the library waits for it rather than running its own copy of the
# rule, so a parallel build never runs two `npm ci` in the same folder.
add_custom_target(brinecast_npm_packages DEPENDS ${BRINECAST_NPM_OUTPUTS})
add_dependencies(brinecast_cli brinecast_npm_packages)

include(${PROJECT_SOURCE_DIR}/cmake/EmbedDocuments.cmake)
embed_documents(TARGET brinecast_cli
  NAME generated/reports/HtmlAssets.cpp
  HEADER brinecast/reports/HtmlAssets.h
  FUNCTION korvane::Brinecast::cli::htmlAssets
  COMMENT "Embedding the HTML report's charting library, script and style"
  INPUTS
    ${BRINECAST_UPLOT_DIR}/dist/uPlot.iife.min.js
    ${BRINECAST_UPLOT_DIR}/dist/uPlot.min.css
    ${BRINECAST_UPLOT_DIR}/LICENSE
    ${BRINECAST_WEB_DIR}/report/report.js
    ${BRINECAST_WEB_DIR}/report/report.css)
