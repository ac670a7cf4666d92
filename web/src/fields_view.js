// The fields of the data: what they hold, their kinds, the order of their categories, their roles.
import {usualOrder} from './categories.js';
import {announce, byId, count, h, makeDraggable, makeDropTarget, option, refill} from './elements.js';
import {assignRole, kKinds, kRoles, roleOf} from './state.js';

const kFieldType = 'application/x-npar-field';
const kCategoryType = 'application/x-npar-category';
const kMostTold = 8;  // categories
const kMany = 50;  // fields that are laid out only where they are seen
const kSvg = 'http://www.w3.org/2000/svg';

function histogram(counts) {
  const svg = document.createElementNS(kSvg, 'svg');
  const most = Math.max(...counts);
  svg.setAttribute('viewBox', `0 0 ${counts.length} 10`);
  svg.setAttribute('preserveAspectRatio', 'none');
  svg.setAttribute('aria-hidden', 'true');
  counts.forEach((number, i) => {
    const bar = document.createElementNS(kSvg, 'rect');
    const height = (10 * number) / most;
    for (const [name, value] of Object.entries({x: i + 0.05, y: 10 - height, width: 0.9, height})) {
      bar.setAttribute(name, value);
    }
    svg.append(bar);
  });
  return svg;
}

function valuesText(field) {
  if (field.kind === 'continuous') {
    return count(field.different, 'value', 'different values') +
      (field.lowest === null ? '' : ` from ${field.lowest} to ${field.highest}`);
  }
  const told = field.categories.slice(0, kMostTold).map(({value, count: records}) => `${value} (${records})`);
  if (told.length < field.different) told.push('…');
  return `${count(field.different, 'category', 'categories')}: ${told.join(', ')}`;
}

function contentOf(field) {
  const missing = Object.entries(field.missing)
    .map(([text, records]) => `${records} ${text === '' ? 'empty' : `“${text}”`}`);
  return h('div', {class: 'content'},
    field.histogram.length > 0 ? histogram(field.histogram) : null,
    h('p', {}, `N ${field.n.toLocaleString('en')}; ${valuesText(field)}`),
    missing.length > 0 ? h('p', {class: 'help'}, `missing: ${missing.join(', ')}`) : null,
    field.why ? h('p', {class: 'help'}, field.why) : null,
    field.nearlyEqual.map((group) => h('p', {class: 'help'}, `${group} differ only by case or spaces`)));
}

function moveCategory(page, field, order, from, to) {
  const moved = [...order];
  moved.splice(to, 0, ...moved.splice(from, 1));
  page.choices.orders[field.name] = moved;
  announce(`${order[from]} is now ${to + 1} of ${order.length}`);
  page.changed('kinds');
}

function orderEditor(page, field, at) {
  const order = page.choices.orders[field.name] ?? usualOrder(field);
  if (order.length < 2) return null;
  const item = (category, i) => {
    const button = (name, sign, to) => h('button', {
      type: 'button', id: `order-${at}-${name}-${i}`, 'aria-label': `Move ${category} ${name}`,
      disabled: to < 0 || to >= order.length,
      onclick: () => {
        moveCategory(page, field, order, i, to);
        // The same category, by its other button where this one has come to its end.
        const same = byId(`order-${at}-${name}-${to}`);
        (same.disabled ? same.parentElement.querySelector('button:enabled') : same).focus();
      },
    }, sign);
    const element = h('li', {}, h('span', {}, category), button('up', '↑', i - 1), button('down', '↓', i + 1));
    makeDraggable(element, kCategoryType, String(i));
    makeDropTarget(element, kCategoryType, (from) => moveCategory(page, field, order, Number(from), i));
    return element;
  };
  return h('div', {class: 'order'}, h('p', {id: `order-${at}`}, 'Order, lowest first'),
    h('ol', {'aria-labelledby': `order-${at}`}, order.map(item)));
}

function chooseKind(page, field, kind) {
  const {kinds, orders} = page.choices;
  delete kinds[field.name];
  delete orders[field.name];
  if (kind) kinds[field.name] = kind;
  // Numbers are given to categories in an order that stands there.
  if (kind === 'scores') orders[field.name] = usualOrder(field);
  page.changed('kinds');
}

function fieldItem(page, field, at) {
  const {choices} = page;
  const kind = choices.kinds[field.name] ?? '';
  const isOrdered = kind === 'ordinal' || kind === 'scores';
  const kindSelect = h('select', {id: `kind-${at}`, onchange: ({target}) => chooseKind(page, field, target.value)},
    option('', `${field.kind} (as found)`, kind),
    kKinds.map((each) => option(each, each === 'scores' ? 'ordinal, as scores 1, 2, 3' : each, kind)));
  const roleSelect = h('select', {id: `role-${at}`, onchange: ({target}) => {
    assignRole(choices, field.name, target.value);
    page.changed('roles');
  }}, option('', 'not used', roleOf(choices, field.name)),
  kRoles.map(({key, title}) => option(key, title, roleOf(choices, field.name))));
  const name = h('h3', {id: `field-${at}`, title: 'Drag to a role'}, field.name);
  makeDraggable(name, kFieldType, field.name);
  const labelled = (select, text) => h('label', {}, `${text} `,
    h('span', {class: 'away'}, `of ${field.name}`), select);
  return h('li', {class: 'field'}, name, labelled(kindSelect, 'Kind'), labelled(roleSelect, 'Use'),
    contentOf(field), isOrdered ? orderEditor(page, field, at) : null);
}

export function showFields(page) {
  byId('fields').hidden = !page.description;
  if (!page.description) return;
  byId('field-list').classList.toggle('many', page.description.fields.length > kMany);
  refill(byId('field-list'), page.description.fields.map((field, at) => fieldItem(page, field, at)));
}

function chip(page, field, key) {
  const element = h('li', {class: 'chip'}, h('span', {}, field),
    h('button', {type: 'button', 'aria-label': `Take ${field} away`, onclick: () => {
      assignRole(page.choices, field, '');
      page.changed('roles');
      byId(`role-box-${key}`).focus();
    }}, '×'));
  makeDraggable(element, kFieldType, field);
  return element;
}

export function showRoles(page) {
  if (!page.description) return;
  refill(byId('role-boxes'), kRoles.map(({key, title, help}) => {
    const fields = page.choices.roles[key];
    const box = h('section',
      {class: 'role', id: `role-box-${key}`, tabindex: -1, 'aria-labelledby': `role-title-${key}`},
      h('h3', {id: `role-title-${key}`}, title), h('p', {class: 'help'}, help),
      fields.length > 0 ? h('ul', {}, fields.map((field) => chip(page, field, key))) :
        h('p', {class: 'none'}, 'Drop a field here, or choose its use above.'));
    makeDropTarget(box, kFieldType, (field) => {
      assignRole(page.choices, field, key);
      announce(`${field}: ${title}`);
      page.changed('roles');
    });
    return box;
  }));
}
