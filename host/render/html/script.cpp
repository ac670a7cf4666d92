#include "host/render/html/script.h"

namespace npar_host {

const char* const kPageScript = R"js(
(() => {
  'use strict';
  const all = (selector) => [...document.querySelectorAll(selector)];

  for (const button of all('button.copy')) {
    button.hidden = false;
    button.addEventListener('click', () => {
      const selection = getSelection();
      selection.selectAllChildren(button.previousElementSibling);
      const done = document.execCommand('copy');
      selection.removeAllRanges();
      button.textContent = done ? 'Copied' : 'Select it to copy';
      setTimeout(() => { button.textContent = 'Copy'; }, 2000);
    });
  }

  // What scrolls can be reached with the keyboard, and nothing else is a stop.
  const boxes = new ResizeObserver((entries) => {
    for (const box of entries.map((entry) => entry.target)) {
      const spare = Math.max(box.scrollWidth - box.clientWidth, box.scrollHeight - box.clientHeight);
      if (spare > 1) box.tabIndex = 0;
      else box.removeAttribute('tabindex');
    }
  });
  for (const box of all('.scroll')) boxes.observe(box);

  const table = document.querySelector('table.overview');
  if (!table || table.tBodies[0].rows.length === 1) return;
  const body = table.tBodies[0];
  const rows = [...body.rows];
  const rejected = document.getElementById('only-rejected');
  const words = document.getElementById('overview-filter');
  const filter = () => {
    const wanted = words.value.toLowerCase();
    let shown = 0;
    for (const row of rows) {
      const named = (row.cells[0].textContent + ' ' + row.cells[1].textContent).toLowerCase();
      const fits = named.includes(wanted);
      row.hidden = !fits || (rejected.checked ? !row.querySelector('.reject') : false);
      shown += row.hidden ? 0 : 1;
    }
    document.getElementById('overview-count').textContent = shown + ' of ' + rows.length + ' tests';
  };
  rejected.addEventListener('change', filter);
  words.addEventListener('input', filter);
  document.getElementById('overview-tools').hidden = false;

  const key = (row, column) => {
    const figures = row.cells[column].querySelectorAll('data:not(.kind data)');
    if (figures.length) return Number(figures[figures.length - 1].value);
    return column === 0 ? rows.indexOf(row) : row.cells[column].textContent;
  };
  const compare = (a, b) => {
    if (typeof a === typeof b) return typeof a === 'number' ? a - b : a.localeCompare(b);
    return typeof a === 'number' ? -1 : 1;
  };
  const headers = [...table.tHead.rows[0].cells];
  headers.forEach((header, column) => {
    const button = document.createElement('button');
    button.type = 'button';
    button.append(...header.childNodes);
    header.append(button);
    button.addEventListener('click', () => {
      const isUp = header.getAttribute('aria-sort') === 'ascending';
      for (const other of headers) other.removeAttribute('aria-sort');
      header.setAttribute('aria-sort', isUp ? 'descending' : 'ascending');
      const sorted = [...rows].sort((a, b) => compare(key(a, column), key(b, column)));
      body.append(...(isUp ? sorted.reverse() : sorted));
    });
  });
})();
)js";

const char* const kPageScriptHash = "sha256-Q4FoP1p8BeRQvcRsLWYqomGgUXxx21cd4UGdcn9IeuM=";

}  // namespace npar_host
