// What a person has chosen, as plain values: what is saved, opened again and made a command line of.

export const kFamilies = [
  {name: 'one-sample', role: 'oneSample', title: 'One sample'},
  {name: 'related', role: 'related', title: 'Related samples'},
  {name: 'independent', role: 'independent', title: 'Independent samples'},
];

export const kRoles = [
  {key: 'oneSample', option: '--one-sample', title: 'One sample', holdsMany: true,
    help: 'Each field is tested on its own.'},
  {key: 'related', option: '--related', title: 'Related', holdsMany: true,
    help: 'Fields that were measured on the same records.'},
  {key: 'independent', option: '--independent', title: 'Independent', holdsMany: true,
    help: 'Fields that are compared between the groups.'},
  {key: 'group', option: '--by', title: 'Groups', holdsMany: false,
    help: 'The field that divides the records into groups.'},
  {key: 'weight', option: '--weight', title: 'Weight', holdsMany: false,
    help: 'The field that counts how often a record stands.'},
  {key: 'caseId', option: '--case-id', title: 'Case names', holdsMany: false,
    help: 'The field that names the records in plots.'},
];

export const kKinds = ['continuous', 'nominal', 'ordinal', 'scores'];

const kStateVersion = 1;

export function newChoices() {
  return {
    reading: {},  // option of reading, without its dashes, to its text
    kinds: {},  // field to one of kKinds; none: as npar takes it
    orders: {},  // field to its categories, lowest first
    roles: Object.fromEntries(kRoles.map(({key}) => [key, []])),
    tests: {},  // test to its options by name, each a text; none of a family: npar chooses
    settings: {},  // option of an analysis, without its dashes, to its text
  };
}

/** Choices of which some parts stand there. */
export function completed(parts) {
  const fresh = newChoices();
  return {...fresh, ...structuredClone(parts), roles: {...fresh.roles, ...structuredClone(parts.roles)}};
}

export function roleOf(choices, field) {
  return kRoles.find(({key}) => choices.roles[key].includes(field))?.key ?? '';
}

/** A field has one role; an empty key takes it away. In its role it comes last. */
export function assignRole(choices, field, key) {
  for (const role of kRoles) {
    const others = choices.roles[role.key].filter((name) => name !== field);
    const isAlone = role.key === key && !role.holdsMany;
    choices.roles[role.key] = role.key === key ? [...(isAlone ? [] : others), field] : others;
  }
}

export function hasFields(choices) {
  return kFamilies.some(({role}) => choices.roles[role].length > 0);
}

/** The text of a small file; the data are not in it. */
export function writeChoices(choices, fileName) {
  return JSON.stringify({nparPage: kStateVersion, file: fileName, ...choices}, null, 2) + '\n';
}

const isText = (value) => typeof value === 'string';
const isTextList = (value) => Array.isArray(value) && value.every(isText);
const isTextTable = (value) => Object.values(value).every(isText);
const kShapes = {
  reading: isTextTable,
  kinds: (value) => Object.values(value).every((kind) => kKinds.includes(kind)),
  orders: (value) => Object.values(value).every(isTextList),
  roles: (value) => kRoles.every(({key}) => isTextList(value[key])),
  tests: (value) => Object.values(value).every((options) => isObject(options) && isTextTable(options)),
  settings: isTextTable,
};

function isObject(value) {
  return typeof value === 'object' && value !== null && !Array.isArray(value);
}

/** {choices, file}; throws an Error that says what to do where the text is no such file. */
export function readChoices(text) {
  let saved;
  try {
    saved = JSON.parse(text);
  } catch {
    saved = null;
  }
  if (!isObject(saved) || !('nparPage' in saved)) {
    throw new Error('This is no file of saved choices; open one that “Save choices” has written.');
  }
  if (saved.nparPage !== kStateVersion) {
    throw new Error('These choices were saved by another version of this page; choose anew.');
  }
  const choices = newChoices();
  for (const [part, fits] of Object.entries(kShapes)) {
    if (!isObject(saved[part]) || !fits(saved[part])) {
      throw new Error(`The saved choices are damaged at “${part}”; choose anew.`);
    }
    choices[part] = saved[part];
  }
  return {choices, file: isText(saved.file) ? saved.file : ''};
}

/** Leaves out what names fields that the data do not have; answers those names. */
export function fitToFields(choices, names) {
  const known = new Set(names);
  const unknown = new Set();
  const isKnown = (name) => known.has(name) || (unknown.add(name), false);
  for (const {key} of kRoles) choices.roles[key] = choices.roles[key].filter(isKnown);
  for (const part of ['kinds', 'orders']) {
    choices[part] = Object.fromEntries(Object.entries(choices[part]).filter(([name]) => isKnown(name)));
  }
  return [...unknown];
}
