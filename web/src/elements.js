// Elements of the page, made in one call, and what assistive technology is told.

/** h('button', {type: 'button', onclick: run}, 'Run'). False and null leave an attribute or a child out. */
export function h(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (value === true) element.setAttribute(name, '');
    else if (value !== false && value !== null && value !== undefined) element.setAttribute(name, value);
  }
  element.append(...children.flat().filter((child) => child !== null && child !== false));
  return element;
}

export const byId = (id) => document.getElementById(id);

/** Puts others in the place of what the element holds; the focus stays where it was by the id. */
export function refill(element, ...children) {
  const focused = element.contains(document.activeElement) ? document.activeElement.id : '';
  element.replaceChildren(...children.flat().filter((child) => child !== null && child !== false));
  if (focused) byId(focused)?.focus();
}

export function option(value, text, chosen) {
  return h('option', {value, selected: value === chosen}, text);
}

export function announce(text) {
  byId('status').textContent = text;
}

/** "3 records", "1 field". */
export function count(number, one, many) {
  return `${number.toLocaleString('en')} ${number === 1 ? one : many}`;
}

/** Lets an element be dragged from, with a text of that type. */
export function makeDraggable(element, type, text) {
  element.draggable = true;
  element.addEventListener('dragstart', (event) => {
    event.dataTransfer.setData(type, text);
    event.dataTransfer.effectAllowed = 'copyMove';
    event.stopPropagation();
  });
}

/** Calls take(what was dropped) for what holds that type, "Files" being files. */
export function makeDropTarget(element, type, take) {
  const isWanted = (event) => event.dataTransfer.types.includes(type);
  element.addEventListener('dragover', (event) => {
    if (!isWanted(event)) return;
    event.preventDefault();
    event.stopPropagation();
    element.classList.add('over');
  });
  for (const name of ['dragleave', 'drop']) {
    element.addEventListener(name, () => element.classList.remove('over'));
  }
  element.addEventListener('drop', (event) => {
    if (!isWanted(event)) return;
    event.preventDefault();
    event.stopPropagation();
    take(type === 'Files' ? event.dataTransfer.files : event.dataTransfer.getData(type));
  });
}

/** Hands a file over for keeping. */
export function download(name, data, type) {
  const address = URL.createObjectURL(new Blob([data], {type}));
  h('a', {href: address, download: name}).click();
  setTimeout(() => URL.revokeObjectURL(address), 60000);
}
