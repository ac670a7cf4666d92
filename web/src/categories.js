// The categories of a field as npar describe tells them.

/** All in the order that npar gives them by itself; empty where they are too many to be told. */
export function usualOrder(field) {
  if (field.categories.length < field.different) return [];
  const isNumeric = field.lowest !== null;
  const compare = isNumeric ? (a, b) => a - b : (a, b) => (a < b ? -1 : 1);
  return field.categories.map(({value}) => value).sort(compare);
}
