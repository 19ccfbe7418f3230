// The demo driven by WebdriverIO, to show that the endpoint is no one
// client's: the channel list, a key action, now/next, a tune through the
// vendor endpoint and a screenshot.
import { remote } from 'webdriverio';

const [endpoint, page] = process.argv.slice(2);
const url = new URL(endpoint);
const browser = await remote({
  hostname: url.hostname, port: Number(url.port), path: '/', logLevel: 'warn',
  capabilities: { browserName: 'orvane', 'orvane:options': { size: '1280x720' } },
});
const text = async (selector) => (await browser.$(selector)).getText();
const until = (what) => browser.waitUntil(what, { timeout: 10000 });
try {
  await browser.url(page);
  await until(async () => (await browser.$$('#channel-list li')).length === 4);
  await browser.keys(['ArrowRight']);
  await until(async () => (await text('#channel')).includes('Orvane Two'));
  await until(async () => (await text('#now')).includes('Orvane Two Now'));
  const reply = await fetch(`${endpoint}/session/${browser.sessionId}/orvane/tune`, {
    method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify({ index: 3 }),
  });
  if (reply.status !== 200) throw new Error(`tune: HTTP ${reply.status}`);
  await until(async () => (await text('#channel')).includes('Orvane Radio'));
  const png = Buffer.from(await browser.takeScreenshot(), 'base64');
  if (png.subarray(1, 4).toString() !== 'PNG' || png.length < 10000) throw new Error(`screenshot of ${png.length} bytes`);
  console.log('PASS');
} finally {
  await browser.deleteSession();
}
