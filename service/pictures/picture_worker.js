/** Holds one picture in a thread of its own, for what takes the processor long; see picture_thread.js. */
import { parentPort } from 'node:worker_threads';

import { forRecognition, readBitmap, writeBitmap } from './bitmap.js';
import { paint } from './painting.js';
import { survey } from './surroundings.js';

/** @type {import('./bitmap.js').Bitmap} */
let bitmap;

const JOBS = {
  open: (file) => {
    bitmap = readBitmap(Buffer.from(file));
    return { width: bitmap.width, height: bitmap.height, ...forRecognition(bitmap) };
  },
  survey: (passages) =>
    passages.map((passage) =>
      survey(
        bitmap,
        passage,
        passages.filter((other) => other !== passage).map(({ box }) => box),
      ),
    ),
  paint: (texts) => {
    paint(bitmap, texts);
    return writeBitmap(bitmap);
  },
};

parentPort.on('message', ({ job, argument }) => {
  try {
    parentPort.postMessage({ result: JOBS[job](argument) });
  } catch ({ status, code, message, stack }) {
    // A refusal keeps its code on the way to the other thread.
    parentPort.postMessage({ failure: { status, code, message, stack } });
  }
});
