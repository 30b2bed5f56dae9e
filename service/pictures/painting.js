import { backgroundAt } from './surroundings.js';

/**
 * @typedef {object} Lettering a text as it is drawn
 * @property {number} left in pixels of the picture, as the other three
 * @property {number} top
 * @property {number} width
 * @property {number} height
 * @property {Uint8Array} mask how much of each pixel is ink, 0 to 255, row by row
 */

/**
 * Takes texts out of a picture and draws others in their place. All are taken out before the first is drawn, for a text
 * may reach into the place of its neighbour.
 * @param {import('./bitmap.js').Bitmap} bitmap is changed
 * @param {{surroundings: import('./surroundings.js').Surroundings, lettering: Lettering}[]} texts
 */
export function paint(bitmap, texts) {
  for (const { surroundings } of texts) erase(bitmap, surroundings);
  for (const { surroundings, lettering } of texts) draw(bitmap, lettering, surroundings);
}

function erase({ width, data }, surroundings) {
  const { left, top, right, bottom } = surroundings.erased;
  for (let y = top; y < bottom; y++) {
    for (let x = left; x < right; x++) data.set(backgroundAt(surroundings, x, y), 4 * (y * width + x));
  }
}

/** Nothing is drawn outside the room, wherever the letters would go. */
function draw(bitmap, { left, top, width, height, mask }, { room, ink }) {
  for (let y = Math.max(top, room.top); y < Math.min(top + height, room.bottom); y++) {
    for (let x = Math.max(left, room.left); x < Math.min(left + width, room.right); x++) {
      const part = mask[(y - top) * width + x - left];
      if (part > 0) blend(bitmap.data, 4 * (y * bitmap.width + x), ink, part / 255);
    }
  }
}

/** Lays a colour over a pixel; the colours of both count as much as they are opaque. */
function blend(data, at, ink, part) {
  const over = (ink[3] / 255) * part;
  const under = (data[at + 3] / 255) * (1 - over);
  const alpha = over + under;
  if (alpha === 0) return;
  for (let i = 0; i < 3; i++) data[at + i] = Math.round((ink[i] * over + data[at + i] * under) / alpha);
  data[at + 3] = Math.round(255 * alpha);
}
