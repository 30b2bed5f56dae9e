/** PNG files as pictures in shades of gray. */
import { PNG } from 'pngjs';

import { readBitmap } from '../pictures/bitmap.js';

/**
 * @param {Buffer} file
 * @returns {import('./rules.js').GrayPicture | null} null for what is no PNG, is broken, or is too large
 */
export function readGray(file) {
  try {
    const { width, height, data } = readBitmap(file);
    const gray = new Uint8Array(width * height);
    for (let i = 0, at = 0; i < gray.length; i++, at += 4) {
      gray[i] = shade(data[at], data[at + 1], data[at + 2], data[at + 3]);
    }
    return { width, height, data: gray };
  } catch {
    return null;
  }
}

/** Its lightness on white paper. */
const shade = (red, green, blue, alpha) =>
  255 - Math.round(((255 - (0.299 * red + 0.587 * green + 0.114 * blue)) * alpha) / 255);

/** @param {import('./rules.js').GrayPicture} picture @returns {Buffer} a PNG file */
export function writeGray({ width, height, data }) {
  const options = { colorType: 0, inputColorType: 0, inputHasAlpha: false, deflateLevel: 1 };
  const png = new PNG({ width, height, ...options });
  png.data = Buffer.from(data.buffer, data.byteOffset, data.byteLength);
  return PNG.sync.write(png, options);
}
