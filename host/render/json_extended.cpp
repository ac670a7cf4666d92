#include "host/render/json_extended.h"

#include <cstddef>
#include <string>

#include "host/render/table_words.h"

namespace npar_host {

Json ExtendedObject(const ResultDocument& document, const ResultTest& test) {
  Json object = Json::object();
  for (const ResultStatistic& figure : test.extended->figures) {
    object[Key(figure.name)] = Cell(figure.text);
  }
  for (const ResultTable& table : test.extended->tables) {
    Json rows = Json::array();
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      const auto cells = table.rows[row];
      Json item = Json::object();
      if (row < table.rowNames.size()) item["row"] = ExtendedRowTitle(document, test, table, row);
      for (std::size_t i = 0; i < table.columnNames.size(); ++i) {
        item[Key(table.columnNames[i])] = i < cells.size() ? Cell(cells[i]) : Json(nullptr);
      }
      rows.push_back(item);
    }
    object[Key(table.name)] = rows;
  }
  return object;
}

}  // namespace npar_host
