/** Tells the other pages of this browser, of panes and of the workspace, that glossaries or instructions have changed. */

const channel = new BroadcastChannel('quorvantis terminology');

export const tellTerminologyChanged = () => channel.postMessage('changed');

/** @param {() => void} listener called when another page has changed something */
export function onTerminologyChanged(listener) {
  channel.addEventListener('message', listener);
}
